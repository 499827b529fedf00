// The instrument table "OB_0ppm.frq": per instrument, solvent and nucleus the
// frequency of 0 ppm, so that later data of the same instrument are
// referenced at once.
//
// The file is Shift-JIS text beside the program, one row per line, fields
// padded with blanks to fixed widths and separated by ";":
//   ID 32 ; solvent 16 ; nucleus 8 "; " 0 ppm MHz 18 ; used 20 ; updated 20 ; MHz 8
// The 0 ppm frequency is written with "####.##########", the nominal
// frequency with "###0.00". Reading splits at ";" and trims, so narrower
// fields are read too.
#pragma once

#include <array>
#include <string>

#include "session/records.h"

namespace tevo {
struct Session;
}

namespace tevo::editing {

inline constexpr const char* Instr_File_Name = "OB_0ppm.frq";

// Column captions of the table window.
inline constexpr std::array<const char*, 7> Instr_Table_Columns = {
    "装置ID", "溶媒", "核種", "0ppmの周波数", "装置の周波数", "最近の利用日時", "更新・登録日時"};

// The present local date and time, "yyyy/mm/dd hh:nn:ss".
std::string Now_Text();

// One line of the file (UTF-8, without line end). Empty dates are written
// as `now`; a nominal frequency of 0 as round(Zero_Freq * 20) / 20.
std::string Instr_Table_Line(const Instr_Row& row, const std::string& now);

// Splits one line (UTF-8) into a row: control characters become blanks,
// fields are trimmed. False when the ID is empty.
bool Parse_Instr_Line(const std::string& line, Instr_Row& row);

// Reads App_Path/OB_0ppm.frq into Instr_Tab (at most 1000 rows; no file
// leaves the table empty) and adds IDs not yet known to Instrument_Ids,
// in upper case, up to 101 of them.
void Read_Instr_Table(Session& s);

// Writes Instr_Tab to App_Path/OB_0ppm.frq, skipping rows without an ID.
// 0 good, -1 after the file error message.
int Write_Instr_Table(Session& s);

// True when the row is the data set's: ID, solvent and nucleus equal in any
// case, and the nominal frequency within 0.05 MHz of Observe_Frequency.
bool Instr_Row_Matches(const Session& s, const Instr_Row& row);

// Puts the current data set into the table: a matching row takes the present
// Spectrum_Frequency and both dates now; otherwise the first row with an
// empty ID (or a new row) takes ID, solvent, nucleus, Spectrum_Frequency,
// the nominal frequency round(Observe_Frequency * 20) / 20 and the updated
// date. Nothing happens without an instrument ID or observe frequency.
void Update_Instr_Row(Session& s);

// ---- the pick dialog "装置データを使ってReferenceを変更" ----

// A row as the list shows it: the file's columns ID, solvent, nucleus and
// 0 ppm frequency at widths 32, 16, 5 and 18.
std::string Instr_List_Text(const Instr_Row& row);

// The row pre-selected: the first that matches the data set, or -1.
int Form109_Preselect(const Session& s);

// OK on a row: when its solvent or nucleus differ from the data's, asks
// "溶媒または核種が違っていますが、このまま設定しますか？" ("核種エラー");
// then Spectrum_Frequency becomes the row's 0 ppm frequency and the ppm
// axis is rebuilt about the same reference point with the same RESOL.
// 0 applied, 1 declined or no such row.
int Form109_OK(Session& s, int row);

// ---- the edit dialogs ----

// Deletes an ID from Instrument_Ids after "<id>を削除します？" ("装置IDの
// 削除"). True when deleted.
bool Delete_Instr_Id(Session& s, const std::string& id);
// Deletes a table row after "<row>を削除します？" ("装置 Dataの削除").
bool Delete_Instr_Row(Session& s, int row);
// The typed ID, stored in upper case as the data set's Instrument_Id.
void Form107_OK(Session& s, const std::string& id);

}  // namespace tevo::editing
