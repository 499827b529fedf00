#include "datafiles/open_routes.h"

#include <string_view>

#include "datafiles/aspect.h"
#include "datafiles/bruker.h"
#include "datafiles/chemagnetics.h"
#include "datafiles/csv_import.h"
#include "datafiles/ge_omega.h"
#include "datafiles/jcamp.h"
#include "datafiles/jeol_alpha.h"
#include "datafiles/jeol_ex.h"
#include "datafiles/jeol_jdf.h"
#include "datafiles/jeol_lambda.h"
#include "datafiles/mac_fid.h"
#include "datafiles/nuts.h"
#include "datafiles/recognition.h"
#include "datafiles/varian.h"

namespace tevo::datafiles {

namespace {

using R = Refuse_2D;

// A raw "fid" is Bruker's when its acquisition parameters are found, else
// Varian's when a "procpar" is; "data" and "phasefile" are Varian's with a
// "procpar" beside them or in the parent folder, else Chemagnetics'.
bool Varian_Fid(const std::string& path) {
  return Check_Bruker_Fid_Folder(path).status != 0 && !Varian_Param_File(path).empty();
}
bool Varian_Data(const std::string& path) { return !Varian_Param_File(path).empty(); }

Kind_Check Check_Fid_Folder(const std::string& path) {
  return Varian_Fid(path) ? RMV(path) : Check_Bruker_Fid_Folder(path);
}
int Read_Fid_Folder(Session& s, const std::string& path) {
  return Varian_Fid(path) ? Read_Varian(s, path) : Read_Bruker_Fid(s, path);
}
std::string Resolve_Fid_Folder(const std::string& path, int& status) {
  if (!Varian_Fid(path)) {
    status = Check_Bruker_Fid_Folder(path).status == 0 ? 0 : -1;
    return status == 0 ? "BRUKER1" : "";
  }
  const Kind_Check k = RMV(path);
  if (k.status != 0) return status = -1, "";
  const bool two_d = !k.kind.empty() && k.kind[0] == 'V';
  status = two_d ? 2 : 0;
  return two_d ? "VARIAN2" : "VARIAN1";
}

Kind_Check Check_Data_Folder(const std::string& path) { return Varian_Data(path) ? RMV(path) : RMCmx(path); }
int Read_Data_Folder(Session& s, const std::string& path) {
  return Varian_Data(path) ? Read_Varian(s, path) : Read_Cmx(s, path);
}
std::string Resolve_Data_Folder(const std::string& path, int& status) {
  const Kind_Check k = Check_Data_Folder(path);
  if (k.status != 0) return status = -1, "";
  if (!k.varian) return status = 1, "CMX1";
  const bool two_d = !k.kind.empty() && k.kind[0] == 'V';
  status = two_d ? 6 : 1;
  return two_d ? "VAR2D" : "VAR1";
}

// One row per class, first fit wins. A reader of a new format fills its row
// (check, reader) here and nothing else; a row with no reader refuses the
// file with the usual "Dataが違います".
//  match                      in-use twin  check               2D rule     reader               empty kind  1D tag / status, 2D tag / status
const Open_Route kRoutes[] = {
    {".ALS",                   true,  false, Check_Older_Native, R::First_V, Read_Older_Native,   true,  "ALS1", 0, "ALS2", 2},
    {".TV1|.TV2",              true,  false, Check_Native,       R::First_2, Read_Native,         true,  "TEVO1", 0, "TEVO2", 2},
    {".TVO1|.TVO2",            true,  false, Check_Native_V4,    R::First_V, Read1D_DataTevoV4_2, true,  "TEVO1_V4", 0, "TEVO2D_V4", 2},
    {".ECP",                   false, false, Check_Ecp,          R::Status_2, Read_Ecp,           false, "ECP1", 1, "ECP2", 2},
    {".GXD|.GXP",              false, true,  RMA,                R::First_V, Read_Ex,             false, "GXD1", 0, "GXD2", 2},
    {".CSV",                   false, false, Check_Csv,          R::None,    Read_Csv,            false, "", 0, "", 0},
    {".FID|.HED",              false, true,  RMGEO,              R::First_V, Read_Ge_Omega,       false, "GE1", 0, "GE2", 2},
    {".DX|.JDX",               false, false, RMJ,                R::Status_2, Read_Jcamp,         false, "JCAMP1", 0, "JCAMP2", 2},
    {".ALP",                   false, false, Check_Alpha,        R::Has_2D,  Read_Alpha,          true,  "ALPHA1", 0, "ALPHA2", 2},
    {".LAM",                   false, false, Check_Lambda,       R::Has_2D,  Read_Lambda,         true,  "LAMBDA1", 0, "LAMBDA2", 2},
    {".NUT",                   false, false, RMNut,              R::First_V, RDNut,               true,  "NUTS1", 0, "NUTS2", 2},
    {".MSL",                   false, false, Check_Msl,          R::First_V, ReadDataMSL_2,       true,  "MSL1", 0, "MSL2", 2},
    {".BRUF/SER",              false, false, Check_Bruker_Series, R::Has_2D, Read_Bruker_Series, false, "BRUKER1", 0, "BRU2F", 2},
    {".BRUD/2RR",              false, false, Check_Bruker_Processed_Folder, R::Always, nullptr, false, "BRU2D", 6, "BRU2D", 6},
    {"FID|.BRUF|.VARF",        false, false, Check_Fid_Folder,   R::Varian_First_V, Read_Fid_Folder, false, "BRUKER1", 0, "VARIAN2", 2, Resolve_Fid_Folder},
    {".BRUA",                  false, false, Check_Bruker_Fid_Folder, R::None, Read_Bruker_Fid, false, "BRUKER1", 0, "BRUKER2", 2},
    {".BRUP|.BRUD|1R",         false, false, Check_Bruker_Processed_Folder, R::None, Read_Bruker_Spectrum, false, "BRUKER1R", 0, "BRUKER2RR", 2},
    {"DATA|PHASEFILE|.VARD|.CMX", false, false, Check_Data_Folder, R::Varian_First_V, Read_Data_Folder, false, "CMX1", 1, "VAR2D", 6, Resolve_Data_Folder},
    {".IMPORT",                false, false, Check_Mac,          R::First_V, Read_Mac_Fid,        false, "MAC", 0, "MAC", 2},
    {"SER",                    false, false, Check_Bruker_Series, R::Has_2D, Read_Bruker_Series, false, "BRUKER1", 0, "BRUKER2", 2},
    {"2RR",                    false, false, Check_Bruker_Processed_Folder, R::Always, nullptr, false, "BRUKER2RR", 2, "BRUKER2RR", 2},
};

bool Token_Fits(std::string_view token, const Recognition& r) {
  if (const size_t slash = token.find('/'); slash != std::string_view::npos)
    return Token_Fits(token.substr(0, slash), r) && Token_Fits(token.substr(slash + 1), r);
  if (!token.empty() && token[0] == '.') return Class_Is(r.file_class, std::string(token));
  return r.base_name == token;
}

}  // namespace

const Open_Route* Find_Route(const Recognition& r) {
  for (const auto& route : kRoutes) {
    std::string_view m = route.match;
    while (!m.empty()) {
      const size_t bar = m.find('|');
      if (Token_Fits(m.substr(0, bar), r)) return &route;
      m = bar == std::string_view::npos ? std::string_view() : m.substr(bar + 1);
    }
  }
  return nullptr;
}

bool Is_2D(const Open_Route& route, const Kind_Check& k) {
  switch (route.refuse) {
    case R::First_V: return !k.kind.empty() && k.kind[0] == 'V';
    case R::First_2: return !k.kind.empty() && k.kind[0] == '2';
    case R::Status_2: return k.status == 2;
    case R::Has_2D: return k.kind.find("2D") != std::string::npos;
    case R::Varian_First_V: return k.varian && !k.kind.empty() && k.kind[0] == 'V';
    case R::Always: return true;
    case R::None: break;
  }
  return false;
}

bool Check_Failed(const Open_Route& route, const Kind_Check& k) {
  // Checks that tell 1D from 2D by their status only fail below 0.
  if (route.refuse == R::Status_2) return k.status < 0;
  return k.status != 0;
}

}  // namespace tevo::datafiles
