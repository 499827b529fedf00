// The ASCII spectrum export: the lines of each choice of values on a
// spectrum of four points, and the command's dialogs and extension check.
#include <gtest/gtest.h>

#include <filesystem>

#include "datafiles/ascii_export.h"
#include "datafiles/open_file.h"
#include "datafiles/quiet_session.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

// 1 .. 4 ppm with the values 1, -2, 4, 2 and imaginary parts 0.5 .. 2.
void Four_Points(Session& s) {
  s.Array_Rows = 1;
  Alloc_Point_Arrays(s, 4);
  s.Spec_Points = 4;
  const float re[] = {1, -2, 4, 2};
  for (int i = 0; i < 4; ++i) {
    s.Spec_Axis[i] = static_cast<float>(i + 1);
    s.Spec_Re(i) = re[i];
    s.Spec_Im(i) = 0.5f * static_cast<float>(i + 1);
  }
  s.Y_Full_Scale = 8;
  s.Y_Offset = 0.25f;
  s.X_Left = 3.5f;
  s.X_Right = 1.5f;
}

TEST(AsciiExport, EachChoiceOfValuesAndTheCommandsChecks) {
  test::Temp_Dir dir;
  test::Quiet_Session q;
  q.s.Log_Mode = -1;
  Four_Points(q.s);
  const std::string path = (dir / "x.txt").string();
  struct Case {
    const char* mode;
    const char* text;
  };
  // From the highest ppm down; "D" keeps the view 1.5 .. 3.5 ppm and puts
  // y / 8 + 0.25 of the frame's height.
  for (const Case& c : {Case{"A", "4, 2,2\r\n3, 4,1.5\r\n2, -2,1\r\n1, 1,0.5\r\n"},
                        Case{"R1", "4, 0.5,0\r\n3, 1,0\r\n2, -0.5,0\r\n1, 0.25,0\r\n"},
                        Case{"D", "3, 0.75,0\r\n2, 0,0\r\n"}}) {
    SCOPED_TRACE(c.mode);
    ASSERT_EQ(Write_Ascii(q.s, path, 0, c.mode), 0);
    EXPECT_EQ(test::Read_Text(path), c.text);
  }

  // The command: the choice of values, then the name; an extension other
  // than .txt, .dat and .asc is refused and nothing is written.
  q.ui.choice_answers = {2};
  ASSERT_EQ(m18_Click(q.s, (dir / "y.asc").string()), 0);
  EXPECT_EQ(test::Read_Text(dir / "y.asc"), "4, 0.5,0\r\n3, 1,0\r\n2, -0.5,0\r\n1, 0.25,0\r\n");
  q.ui.choice_answers = {0};
  q.ui.button_answers = {2};
  EXPECT_EQ(m18_Click(q.s, (dir / "y.csv").string()), 1);
  EXPECT_EQ(q.Last_Message(), "ﾌｧｲﾙが不正です。または,\rﾌｧｲﾙ名の拡張子が不適切");
  EXPECT_EQ(q.ui.shown.back().title, "ファイル名エラー");
  EXPECT_FALSE(std::filesystem::exists(dir / "y.csv"));
  q.ui.choice_answers = {0};
  q.ui.file_answers = {platform::File_Answer{(dir / "z.dat").string(), 2}};
  ASSERT_EQ(m18_Click(q.s), 0);
  EXPECT_EQ(q.ui.file_requests.back().title, "データの保存(ASCII)");
  EXPECT_EQ(q.ui.file_requests.back().filter,
            "ASCII形式(*.txt)|*.txt|ASCII形式(*.dat)|*.dat|ASCII形式(*.asc)|*.asc|全てのファイル|*.*|");
  EXPECT_TRUE(std::filesystem::exists(dir / "z.dat"));
}

}  // namespace
}  // namespace tevo::datafiles
