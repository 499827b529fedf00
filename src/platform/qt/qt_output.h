// Pictures to files and the start of the Qt drawing back end.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/surface.h"

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

}  // namespace tevo::platform
