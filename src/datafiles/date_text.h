// Dates and times as the foreign formats write them ("14-MAR-1998 10:23:45",
// "Mon Jan 14 10:12:00 2008", "2008/01/14 10:12", "2008年1月14日").
#pragma once

#include <ctime>
#include <string>

namespace tevo::datafiles {

struct Date_Text {
  int Year = 0, Month = 0, Day = 0;  // all 0 when the text could not be split
  int Hour = 0, Minute = 0, Second = 0;
  bool ok() const { return Year != 0; }
};

// Blanks out an English month word (full or three-letter, either case),
// takes a time h:m or h:m:s, and splits the remaining numbers into day,
// month and year: a leading number above 31 or of four digits is the year
// (year, month, day); otherwise day, month, year, or month, day, year when
// the second number is above 12. With a month word only day and year are
// needed. Two-digit years below 70 are 20xx, others 19xx. Text that can't be
// split leaves date and time 0.
Date_Text Parse_Date_Text(const std::string& text);

// Seconds after 1970 as a file gave them, held to the years 1970 .. 9999
// (NaN gives 0), so that a damaged header's date converts without overflow.
std::time_t Clamped_Epoch_Seconds(double seconds);

}  // namespace tevo::datafiles
