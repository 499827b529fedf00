#include "page/window_pages.h"

#include <algorithm>
#include <filesystem>

#include "deconvolution/line_plot.h"
#include "deconvolution/line_results.h"
#include "display/style.h"
#include "relaxation/relax_plot.h"
#include "session/session.h"

namespace tevo::page {

using display::Setting_Colour;
using display::Setting_Int;

namespace {

Font_Rec Gothic(float size) {
  Font_Rec f;
  f.Face = display::Gothic_Face;
  f.Size = size;
  return f;
}

// The first rows of a window's block: the data's file.
std::vector<Parameter_Row> File_Rows(const Session& s) {
  const std::string name = std::filesystem::path(s.Param.Data_File).filename().string();
  if (name.empty()) return {};
  return {{"File", name}};
}

}  // namespace

std::string Window_Paper_Caption(const Session& s) {
  const int code = Setting_Int(s, "PAPER SIZE", 9);
  const char* name = code == 8     ? "A3 "
                     : code == 11  ? "A5 "
                     : code == 12  ? "B4 "
                     : code == 13  ? "B5 "
                     : code == 101 ? "A4(Half Column) "
                     : code == 102 ? "A4(Full Column) "
                                   : "A4 ";
  return std::string(name) + (Setting_Int(s, "PAPER ORIENT", 0) == 1 ? "横置" : "縦置");
}

Page_Content Line_Page(const Session& s, const deconvolution::Sim_State& st, float y_mag) {
  Page_Content c;
  c.paint = [&s, &st, y_mag](platform::Surface& surf, const Page_Geometry& g) {
    const deconvolution::Line_Plot_Style style = deconvolution::Line_Print_Style(s, g.Kx);
    const deconvolution::Line_Plot_Bands b =
        deconvolution::Line_Bands(g.Frame.Left, g.Frame.Top, g.Frame.Right, g.Frame.Bottom, style.residual);
    // The model is sampled once per pixel column of the frame, as on screen.
    const deconvolution::Sim_Curve curve = deconvolution::Calc_Simulation(
        s, st, st.Range_Left_Ppm, st.Range_Right_Ppm, std::max(2, b.right - b.left));
    deconvolution::Draw_Line_Plot(s, st, curve, y_mag, surf, b, style);
  };
  // The fitted lines take the place of the acquisition parameters.
  c.rows = File_Rows(s);
  for (const deconvolution::Line_Result_Row& r :
       deconvolution::Line_Result_Rows(st.Peaks, deconvolution::Sim_Axis0(s), s.Spectrum_Frequency))
    c.rows.push_back({"Peak " + r.text[0], r.text[1] + " ppm, " + r.text[3] + " Hz, 高さ " + r.text[4] +
                                                ", 関数 " + r.text[5] + ", 積分比 " + r.text[6]});
  c.paper = Setting_Colour(s, "SIM PAPER COL", 0xFFFFFF);
  c.block = Setting_Int(s, "SIM PRNT PARA", 1) == 1;
  c.comment = Setting_Int(s, "SIM PRNT COMNT", 1) == 1;
  Block_Style& b = c.block_style;
  b.outline = true;
  b.outline_colour = Setting_Colour(s, "SIM PAR WAKU COL", 0);
  b.text = Setting_Colour(s, "SIM PARA COL", 0);
  b.fill = Setting_Colour(s, "SIM PAR BG COL", 0xFFFFFF);
  b.font = Print_Font(s, "SIM PAR FONTNAME", "SIM PAR FONTSIZE", "SIM PAR FONTBOLD", "SIM PAR FONTITA", Gothic(9));
  return c;
}

Page_Content Relax_Page(const Session& s, const relaxation::Relax_Fit& fit, const relaxation::Relax_Limits& limits) {
  Page_Content c;
  c.paint = [&s, &fit, limits](platform::Surface& surf, const Page_Geometry& g) {
    relaxation::Draw_Relax_Plot(fit, limits, surf, g.Frame.Left, g.Frame.Top, g.Frame.Right, g.Frame.Bottom,
                                relaxation::Relax_Print_Style(s, g.Kx));
  };
  c.frame_width_cm = display::Setting_Num(s, "CAL X LENGTH", 15);
  c.frame_height_cm = display::Setting_Num(s, "CAL Y LENGTH", 10);
  c.rows = File_Rows(s);
  for (const std::string& line : relaxation::Relax_Result_Lines(fit)) c.rows.push_back({line, ""});
  if (!fit.Fit_Curve_T.empty()) c.rows.push_back({relaxation::Criterion_Text(fit.Final_Criterion), ""});
  c.block_style.font = Print_Font(s, "CAL FONT COM", "CAL FONTSIZE COM", "CAL FONTBLD COM", "CAL FONTITA COM",
                                  Gothic(10));
  return c;
}

}  // namespace tevo::page
