#include "datafiles/date_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

namespace tevo::datafiles {

namespace {

constexpr std::array<const char*, 12> Month_Long = {"JANUARY", "FEBRUARY", "MARCH",     "APRIL",
                                                    "MAY",     "JUNE",     "JULY",      "AUGUST",
                                                    "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
constexpr std::array<const char*, 12> Month_Short = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                     "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

bool Is_Letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool Is_Digit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

// Finds the first month word standing alone (no letter either side), blanks
// it and returns its number 1..12, or 0.
int Take_Month_Word(std::string& t) {
  for (const auto* table : {&Month_Long, &Month_Short}) {
    for (size_t m = 0; m < 12; ++m) {
      std::string word = (*table)[m];
      for (size_t at = t.find(word); at != std::string::npos; at = t.find(word, at + 1)) {
        bool left_ok = at == 0 || !Is_Letter(t[at - 1]);
        size_t end = at + word.size();
        bool right_ok = end >= t.size() || !Is_Letter(t[end]);
        if (left_ok && right_ok) {
          t.replace(at, word.size(), std::string(word.size(), ' '));
          return static_cast<int>(m) + 1;
        }
      }
    }
  }
  return 0;
}

struct Number {
  int value;
  size_t digits;
};

// Reads the digit run at t[i]; moves i past it.
Number Read_Number(const std::string& t, size_t& i) {
  Number n{0, 0};
  while (i < t.size() && Is_Digit(t[i]) && n.digits < 9) {
    n.value = n.value * 10 + (t[i] - '0');
    ++n.digits;
    ++i;
  }
  while (i < t.size() && Is_Digit(t[i])) ++i;
  return n;
}

int Full_Year(const Number& n) {
  if (n.digits <= 2) return n.value < 70 ? 2000 + n.value : 1900 + n.value;
  return n.value;
}

bool Is_Year(const Number& n) { return n.value > 31 || n.digits == 4; }

}  // namespace

Date_Text Parse_Date_Text(const std::string& text) {
  std::string t;
  for (char c : text) t += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  int month = Take_Month_Word(t);

  // Numbers, with a time h:m[:s] taken out of the stream.
  std::vector<Number> numbers;
  Date_Text d;
  bool have_time = false;
  for (size_t i = 0; i < t.size();) {
    if (!Is_Digit(t[i])) {
      ++i;
      continue;
    }
    Number n = Read_Number(t, i);
    if (!have_time && i + 1 < t.size() && t[i] == ':' && Is_Digit(t[i + 1])) {
      ++i;
      Number minute = Read_Number(t, i);
      Number second{0, 0};
      if (i + 1 < t.size() && t[i] == ':' && Is_Digit(t[i + 1])) {
        ++i;
        second = Read_Number(t, i);
      }
      d.Hour = n.value, d.Minute = minute.value, d.Second = second.value;
      have_time = true;
      continue;
    }
    numbers.push_back(n);
  }

  int day = 0, year = 0;
  if (month != 0) {
    if (numbers.size() < 2) return {};
    if (Is_Year(numbers[0])) year = Full_Year(numbers[0]), day = numbers[1].value;
    else day = numbers[0].value, year = Full_Year(numbers[1]);
  } else {
    if (numbers.size() < 3) return {};
    if (Is_Year(numbers[0])) {
      year = Full_Year(numbers[0]), month = numbers[1].value, day = numbers[2].value;
    } else if (numbers[1].value > 12) {
      month = numbers[0].value, day = numbers[1].value, year = Full_Year(numbers[2]);
    } else {
      day = numbers[0].value, month = numbers[1].value, year = Full_Year(numbers[2]);
    }
  }
  if (month < 1 || month > 12 || day < 1 || day > 31 || year < 1) return {};
  if (d.Hour > 23 || d.Minute > 59 || d.Second > 60) d.Hour = d.Minute = d.Second = 0;
  d.Year = year, d.Month = month, d.Day = day;
  return d;
}

std::time_t Clamped_Epoch_Seconds(double seconds) {
  if (!(seconds > 0)) return 0;  // NaN too
  return static_cast<std::time_t>(std::min(seconds, 253402300799.0));
}

}  // namespace tevo::datafiles
