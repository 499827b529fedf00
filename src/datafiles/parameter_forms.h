// The questions a reader asks about the file it reads: the parameter
// tables NMR1D_Form103_CSV (after a CSV read) and NMR1D_Form103 (the
// parameters of a raw FID), and Form120, the kind of words a binary file
// holds. The windows only show the rows; the rows, their checks and what
// OK sets live here.
#pragma once

#include <string>
#include <vector>

#include "platform/ui.h"
#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The values one parameter table shows and corrects.
enum class Param_Field {
  Date,  // DATIM
  Fid_Or_Spectrum,  // SMODE: "S" a spectrum, anything else a FID
  Ob_Nuc,  // OBNUC; "??" and "NUL" are refused
  Ob_Freq,  // the carrier, MHz, above 0
  Sweep,  // FREQU, Hz, above 0
  Solvent,  // SLVNT
  Scans,  // SCANS
  Comment,  // COMNT
};

// The rows of a table over `p` and the carrier: the caption of each field
// ("*" in front of a required one) and its text.
std::vector<platform::Param_Row> Param_Rows(const std::vector<Param_Field>& fields, const Data_Param& p,
                                            double observe);
// True when the table refuses `value` in row `row`.
bool Param_Row_Refused(const std::vector<Param_Field>& fields, std::size_t row, const std::string& value);
// The first refused row, or -1.
int Param_Rows_Check(const std::vector<Param_Field>& fields, const std::vector<platform::Param_Row>& rows);
// Takes the rows into `p` and the carrier.
void Take_Param_Rows(const std::vector<Param_Field>& fields, const std::vector<platform::Param_Row>& rows,
                     Data_Param& p, double& observe);

// NMR1D_Form103_CSV: the table of a CSV read. Returns 0 with the values
// taken, 1 when the operator cancels or a required value is refused.
int NMR1D_Form103_CSV(Session& s, Data_Param& p, double& observe);

// NMR1D_Form103 ("パラメータの変更(修正可能分)"): the parameters of the FID
// just read, corrected in the session. Returns 0 or 1 as above.
int NMR1D_Form103(Session& s);

// Form120 ("Data形式の選択(浮動小数点型?)"): "SINGLE", "LONG" or "DOUBLE";
// empty on cancel.
std::string Form120(Session& s);

}  // namespace tevo::datafiles
