// Pictures to files and the start of the Qt drawing back end.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/surface.h"

class QPrinter;

namespace tevo::platform {

// Creates the process's QGuiApplication when none exists (headless: the
// offscreen platform unless one is chosen), so fonts and painters work in
// the command-line tool and the tests. Safe to call more than once.
void Ensure_Gui_Application();

// Fills the font table of the markup with the installed families (charset
// 128 for faces with Japanese, 2 for symbol faces, 0 otherwise) and the
// faces the program names, which the surface draws with stand-ins.
void Probe_Font_Table();

// Paints a picture of width x height pixels at pixels_per_inch into a file
// chosen by its extension: .png, .bmp (raster, XOR works), .pdf, .svg
// (vector, XOR drawn as copy). The area starts filled with background.
// Returns 0 when the file was written, -1 otherwise.
int Render_To_File(const std::filesystem::path& path, int width, int height,
                   double pixels_per_inch, Colour background,
                   const std::function<void(Surface&)>& paint);

// A PDF file of pages of width x height pixels at pixels_per_inch:
// paint_page paints page n (from 0) on a fresh white page and returns
// whether another follows. Returns 0 when the file was written, -1
// otherwise.
int Render_Pages_To_Pdf(const std::filesystem::path& path, int width, int height,
                        double pixels_per_inch,
                        const std::function<bool(Surface&, int)>& paint_page);

// The paper a printer holds, in mm, as it lies (width across the page).
void Printer_Paper_mm(const QPrinter& printer, double& width, double& height);

// Paints one page on a printer (or a printer with a PDF output file): the
// surface is the whole paper at the printer's resolution, with a white
// pixel at its top left so that even an empty page prints. Returns 0 when
// the page went out, -1 when the printer could not be opened.
int Print_Page(QPrinter& printer, const std::function<void(Surface&)>& paint);

// Pages on a printer, each as Print_Page paints one: paint_page paints page
// n (from 0) and returns whether another follows.
int Print_Pages(QPrinter& printer, const std::function<bool(Surface&, int)>& paint_page);

}  // namespace tevo::platform
