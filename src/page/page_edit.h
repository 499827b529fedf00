// The page editor's work on the sheet: what lies under the mouse, moving
// and resizing it by a drag in preview pixels, the free texts, lines and
// pictures it adds and removes, and the editor's own undo list. Positions
// go back from pixels to cm or to fractions of the spectrum frame through
// the inverse of Page_Geometry, so the same edit holds at any zoom.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "page/page_model.h"
#include "platform/surface.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// How near (pixels) the pointer must come to a corner, a line end or a
// peak number to take it.
inline constexpr int Hit_Tolerance = 4;
// Pictures a page holds.
inline constexpr int Image_Max = 20;

// --- What lies under the pointer ---

enum class Hit_Kind { None, Text, Line, Image, Peak_Label, Frame, Para, Peak_List, Inset };
// Which part was taken: the whole (a move), the lower right corner (a
// resize), or one end of a line.
enum class Hit_Part { Body, Corner, End1, End2 };

struct Page_Hit {
  Hit_Kind Kind = Hit_Kind::None;
  int Index = -1;  // into the session's list of that kind; -1 for the boxes
  Hit_Part Part = Hit_Part::Body;
  // The object's rectangle in pixels; for a line its two ends, (Left, Top)
  // the first and (Right, Bottom) the second.
  Pixel_Rect Box;
};

// The rectangle a free text covers on the surface.
Pixel_Rect Text_Box(platform::Surface& measure, const Page_Geometry& g, const Text_Rec& t);

// The object under pixel (x, y), from the top layer down: texts, line
// ends and lines, pictures (the topmost first), peak numbers, then the
// spectrum frame, the parameter block, the peak list and the insets. Only
// what the page draws can be taken. `measure` sizes the texts.
Page_Hit Hit_Test(Session& s, platform::Surface& measure, const Page_Geometry& g, int x, int y);

// The outline a drag by (dx, dy) pixels shows: the box moved, or its lower
// right corner moved (a picture keeps its aspect), or one line end moved.
Pixel_Rect Drag_Box(const Page_Hit& hit, int dx, int dy);

// The status line of a box: "左 " left ", 下 " bottom " cm" and its width
// " x " height in cm, measured from the sheet's left and bottom edges.
std::string Drag_Status(const Page_Geometry& g, const Page_Setup& p, const Pixel_Rect& box);

// --- Undo ---

enum Page_Undo_Kind : uint16_t {
  Undo_Text_Change = 1,
  Undo_Text_Delete = 2,
  Undo_Text_Add = 3,
  Undo_Line_Move = 10,
  Undo_Line_Delete = 11,
  Undo_Line_Kind = 12,
  Undo_Line_Add = 13,
  Undo_Image_Add = 20,
  Undo_Image_Delete = 21,
  Undo_Box_Move = 22,  // a picture, the parameter block or the peak list
  Undo_Image_Front = 24,
  Undo_Image_Back = 25,
  Undo_Box_Size = 26,
  Undo_Page_Inset_Move = 28,
  Undo_Page_Inset_Size = 29,
  Undo_Peak_Number = 31,
  Undo_Frame_Move = 42,
  Page_Undo_Empty = 65535,
};

// One step: the kind, the object's index and the object as it was.
struct Page_Undo_Rec {
  uint16_t Kind = Page_Undo_Empty;
  int Index = -1;
  Text_Rec Text;
  Line_Rec Line;
  Image_Rec Image;
  Inset_Rec Inset;
  Peak_Rec Peak;
  std::vector<std::pair<std::string, double>> Keys;  // the page boxes' settings
};

// 21 slots, the newest first: 20 steps back, the oldest falls off.
struct Page_Undo_List {
  std::array<Page_Undo_Rec, 21> Slots;
};

// Records the object `index` of `kind` as it stands, before the edit.
void Undo_Push(Page_Undo_List& u, const Session& s, uint16_t kind, int index);
// Puts the newest step back and drops it; false when there is none.
bool Undo_Pop(Page_Undo_List& u, Session& s);

struct Undo_Caption {
  std::string Text;
  bool Enabled = false;
};
// The undo item's caption by the newest kind; `text_editor` gives the
// captions that serve while a text is being typed. Empty or unknown kinds
// give "取り消し", disabled.
Undo_Caption Page_Undo_Caption(uint16_t kind, bool text_editor);

// --- Applying a drag ---

// Moves or resizes the hit object by a drag of (dx, dy) pixels, recording
// the undo step first: positions in cm for the frame and the parameter
// block, fractions of the frame for the rest. False when nothing changed.
bool Drop_Drag(Session& s, Page_Undo_List& u, const Page_Geometry& g, const Page_Hit& hit, int dx,
               int dy);

// --- Free texts ---

// A new text whose top left stands at pixel (x, y), in the default face.
Text_Rec Text_At(const Page_Geometry& g, int x, int y, std::string text);
// Adds a text (index, or -1 when the page holds Text_Max), replaces one,
// removes one; each records its undo step and turns "PRINT TEXT" on.
int Add_Text(Session& s, Page_Undo_List& u, const Text_Rec& t);
bool Change_Text(Session& s, Page_Undo_List& u, int index, const Text_Rec& t);
bool Delete_Text(Session& s, Page_Undo_List& u, int index);

// What the editor's font and size lists put around a selection:
// "\f:" name "(" ... ")" and "\p" size "(" ... ")".
std::string Font_Group(std::string_view face, std::string_view selection);
std::string Size_Group(double points, std::string_view selection);

// --- Lines ---

// Captions of the line kinds (four bodies by four head layouts) and of the
// dash styles, in the order of Line_Rec.Kind and Line_Rec.Style.
const std::vector<std::string>& Line_Kind_Table();
const std::vector<std::string>& Dash_Table();

// A line between two pixels of the sheet.
Line_Rec Line_Between(const Page_Geometry& g, int x1, int y1, int x2, int y2, int kind, int style);
int Add_Line(Session& s, Page_Undo_List& u, const Line_Rec& l);
bool Delete_Line(Session& s, Page_Undo_List& u, int index);
bool Set_Line_Kind(Session& s, Page_Undo_List& u, int index, int kind, int style);

// --- Pictures ---

// True for the picture kinds a page takes: .EMF .WMF .JPG .JPEG .BMP .ICO
// .PNG (any case).
bool Picture_Kind_Known(std::string_view path);
// The message of a picture that cannot be loaded, with its extension.
std::string Picture_Refused_Text(std::string_view path);
// Whether bytes hold a Windows metafile (enhanced, placeable or plain).
bool Is_Metafile_Bytes(const std::vector<uint8_t>& bytes);

// Adds a picture at the pixel rectangle (left, top, width, height) of the
// sheet; -1 when the page holds Image_Max pictures.
int Add_Image(Session& s, Page_Undo_List& u, const Page_Geometry& g, std::vector<uint8_t> bytes,
              int left, int top, int width, int height);
bool Delete_Image(Session& s, Page_Undo_List& u, int index);
// Draws the picture last (front) or first (back); returns its new index.
int Image_To_Front(Session& s, Page_Undo_List& u, int index);
int Image_To_Back(Session& s, Page_Undo_List& u, int index);
// Turns the white-out of a picture on or off.
bool Toggle_White_Out(Session& s, int index);

// --- Overlays ---

// The overlay slot (1 ..) whose trace passes nearest to pixel (x, y) of
// the page's frame, within a few pixels; 0 for none.
int Overlay_Under(Session& s, const Page_Geometry& g, int x, int y);

}  // namespace tevo::page
