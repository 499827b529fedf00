#include "datafiles/parameter_forms.h"

#include <cstdio>

#include "datafiles/vendor_rules.h"
#include "datafiles/vendor_text.h"
#include "session/session.h"

namespace tevo::datafiles {

namespace {

const char* Caption(Param_Field f) {
  switch (f) {
    case Param_Field::Date: return "Date";
    case Param_Field::Fid_Or_Spectrum: return "* FID or Spectrum";
    case Param_Field::Ob_Nuc: return "* ObNuc";
    case Param_Field::Ob_Freq: return "* ObFreq(MHz)";
    case Param_Field::Sweep: return "* Sweep Width(Hz)";
    case Param_Field::Solvent: return "Solvent";
    case Param_Field::Scans: return "Scans";
    case Param_Field::Comment: return "Comment";
  }
  return "";
}

std::string Number_Text(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.10g", v);
  return buf;
}

std::string Text_Of(Param_Field f, const Data_Param& p, double observe) {
  switch (f) {
    case Param_Field::Date: return p.DATIM;
    case Param_Field::Fid_Or_Spectrum: return p.SMODE == 1 ? "S" : "F";
    case Param_Field::Ob_Nuc: return p.OBNUC;
    case Param_Field::Ob_Freq: return Number_Text(observe);
    case Param_Field::Sweep: return Number_Text(p.FREQU);
    case Param_Field::Solvent: return p.SLVNT;
    case Param_Field::Scans: return std::to_string(p.SCANS);
    case Param_Field::Comment: return p.COMNT;
  }
  return {};
}

bool Refused(Param_Field f, const std::string& text) {
  const std::string t = Upper(Trim(text));
  switch (f) {
    case Param_Field::Fid_Or_Spectrum: return t.empty();
    case Param_Field::Ob_Nuc: return t.empty() || t == "??" || t == "NUL";
    case Param_Field::Ob_Freq:
    case Param_Field::Sweep: {
      const auto v = Leading_Number(t);
      return !v || !(*v > 0);
    }
    case Param_Field::Scans: return !t.empty() && !Leading_Number(t);
    default: return false;
  }
}

}  // namespace

std::vector<platform::Param_Row> Param_Rows(const std::vector<Param_Field>& fields, const Data_Param& p,
                                            double observe) {
  std::vector<platform::Param_Row> rows;
  for (Param_Field f : fields) rows.push_back({Caption(f), Text_Of(f, p, observe)});
  return rows;
}

bool Param_Row_Refused(const std::vector<Param_Field>& fields, std::size_t row, const std::string& value) {
  return row < fields.size() && Refused(fields[row], value);
}

int Param_Rows_Check(const std::vector<Param_Field>& fields, const std::vector<platform::Param_Row>& rows) {
  for (size_t i = 0; i < fields.size(); ++i)
    if (i >= rows.size() || Refused(fields[i], rows[i].value)) return static_cast<int>(i);
  return -1;
}

void Take_Param_Rows(const std::vector<Param_Field>& fields, const std::vector<platform::Param_Row>& rows,
                     Data_Param& p, double& observe) {
  for (size_t i = 0; i < fields.size() && i < rows.size(); ++i) {
    const std::string v = Trim(rows[i].value);
    switch (fields[i]) {
      case Param_Field::Date: p.DATIM = v; break;
      case Param_Field::Fid_Or_Spectrum: p.SMODE = Upper(v) == "S" ? 1 : 0; break;
      case Param_Field::Ob_Nuc: p.OBNUC = v; break;
      case Param_Field::Ob_Freq: observe = Val(v); break;
      case Param_Field::Sweep: p.FREQU = To_Real32(Val(v)); break;
      case Param_Field::Solvent: p.SLVNT = v; break;
      case Param_Field::Scans: p.SCANS = To_Int32(Val(v)); break;
      case Param_Field::Comment: p.COMNT = v; break;
    }
  }
}

namespace {

constexpr const char* Form103_Title = "パラメータの変更(修正可能分)";

// Shows a table and takes it back; 0 taken, 1 cancelled or refused.
int Ask_Param_Table(Session& s, const char* form, const std::vector<Param_Field>& fields, Data_Param& p,
                    double& observe) {
  const auto check = [&fields](std::size_t row, const std::string& value) {
    return Param_Row_Refused(fields, row, value);
  };
  s.ui->Wait_Cursor(false);
  const auto rows = s.ui->Edit_Parameters(form, Form103_Title, Param_Rows(fields, p, observe), check);
  if (!rows) return 1;
  if (Param_Rows_Check(fields, *rows) >= 0) return Reader_Refuse(s, Param_Error_Text);
  Take_Param_Rows(fields, *rows, p, observe);
  return 0;
}

}  // namespace

int NMR1D_Form103_CSV(Session& s, Data_Param& p, double& observe) {
  static const std::vector<Param_Field> fields = {Param_Field::Date, Param_Field::Fid_Or_Spectrum,
                                                  Param_Field::Ob_Nuc, Param_Field::Ob_Freq, Param_Field::Sweep};
  return Ask_Param_Table(s, "NMR1D_Form103_CSV", fields, p, observe);
}

int NMR1D_Form103(Session& s) {
  static const std::vector<Param_Field> fields = {Param_Field::Ob_Nuc,  Param_Field::Ob_Freq, Param_Field::Sweep,
                                                  Param_Field::Date,    Param_Field::Solvent, Param_Field::Scans,
                                                  Param_Field::Comment};
  Data_Param p = s.Param;
  double observe = s.Observe_Frequency;
  if (const int st = Ask_Param_Table(s, "NMR1D_Form103", fields, p, observe); st != 0) return st;
  // A new carrier or sweep width moves the axis the transform will make.
  if (s.Spectrum_Frequency == s.Observe_Frequency) s.Spectrum_Frequency = observe;
  s.Observe_Frequency = observe;
  p.Observe_Text = Observe_Text_Of(observe);
  if (p.POINT > 0) p.RESOL = p.FREQU / static_cast<float>(p.POINT);
  s.Param = p;
  return 0;
}

std::string Form120(Session& s) {
  s.ui->Wait_Cursor(false);
  const int c = s.ui->Choose("Data形式の選択(浮動小数点型?)", "",
                             {"浮動小数点型(Single)", "整数型", "浮動小数点型(Double)"}, 0);
  return c == 0 ? "SINGLE" : c == 1 ? "LONG" : c == 2 ? "DOUBLE" : "";
}

}  // namespace tevo::datafiles
