// Pictures given as the bytes of a picture file: raster files (PNG, JPEG,
// BMP, ICO, anything QImage reads) and metafiles (EMF, WMF).
//
// A metafile is turned into SVG (EMF through libemf2svg, WMF through
// libwmf's SVG device) and drawn by QSvgRenderer into the target rectangle,
// so that on PDF, SVG and printers it stays lines and areas and scales
// without loss. White-out and black ink need the picture's pixels, so with
// either the metafile is first drawn into an image of the rectangle's size.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <cstdint>
#include <span>

#include "platform/surface.h"

class QPainter;

namespace tevo::platform {

enum class Picture_Kind { Unknown, Emf, Wmf, Raster };

// The kind by the file's bytes: an enhanced metafile starts with record
// type 1 and carries " EMF" at byte 40; a Windows metafile starts with the
// placeable key 0x9AC6CDD7 or with the standard header (type 1 or 2, header
// size 9 words, version 0x0100 or 0x0300). Anything else is tried as a
// raster file.
Picture_Kind Kind_Of_Picture(std::span<const uint8_t> bytes);

// The SVG text of a metafile, empty when it cannot be decoded.
QByteArray Metafile_Svg(std::span<const uint8_t> bytes);

// Paints the picture stretched over rect with the ink's rules. False, and
// nothing painted, when the bytes are no picture this back end can decode
// or the rectangle is empty.
bool Paint_Picture(QPainter& painter, const QRect& rect, std::span<const uint8_t> bytes,
                   Picture_Ink ink = {});

// The picture drawn into an image of the given size (white behind it); a
// null image when it cannot be decoded.
QImage Picture_Image(std::span<const uint8_t> bytes, QSize size);

}  // namespace tevo::platform
