// The data history of a data set: who measured it and when, who transformed
// the FID, and one entry per native save. The readers fill the measurement,
// the transform and the save record the rest, and m209 shows it as a table.
// The fields are the session's (Measured_By, Measured_Name, Transformed_By,
// Transformed_Date, Save_By and Save_Date, whose size is the save count); the
// measurement date is the parameter DATIM.
#pragma once

#include <ctime>
#include <string>

#include "editing/list_tables.h"

namespace tevo {
struct Session;
}

namespace tevo::editing {

// A local time as the history writes it: "yyyy-mm-dd", two blanks, "hh:nn:ss".
std::string History_Stamp(std::time_t t);

// The measurement date (Param.DATIM) in the history's form; empty when the
// text cannot be read as a date or lies at or before 1960-01-01, the value
// that stands for unknown.
std::string Measured_Date(const Session& s);

// The native save: the session's user and the time now join the history.
// Record_Save_Failed takes that entry back when the file was not written.
void Record_Save(Session& s);
void Record_Save_Failed(Session& s);

// The FID transform was committed: the session's user and the time now.
void Record_Transform(Session& s);

// "事項", "実行者", "日付": "Measured" (who, "Unknown" when nobody is named,
// and the measurement date), "FFT" when the FID was transformed, then one
// "Saved " row per save.
List_Table Data_History_Table(const Session& s);

// The name at measuring, shortened to 35 columns for "測定時ファイル名".
std::string Measured_Name_Shown(const Session& s);

}  // namespace tevo::editing
