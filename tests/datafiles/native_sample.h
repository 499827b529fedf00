// A worked-on session with something in every list the native files keep,
// shared by the native format tests.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ui.h"
#include "session/session.h"

namespace tevo::test {

inline void Quiet_Session(Session& s, platform::Scripted_Ui& ui) {
  ui.quiet = true;
  s.ui = &ui;
  s.Log_Mode = -1;  // no log file from the writers
}

// Two rows of 1024 points; FREQU / POINT is exactly 3.90625 Hz.
inline void Fill_Sample_Session(Session& s) {
  Data_Param& p = s.Param;
  p.POINT = 1024;
  p.FREQU = 4000;
  p.RESOL = 3.90625f;
  p.SMTMS = 100;
  p.SMEXR = 7.26f;
  p.OBNUC = "1H";
  p.IRNUC = "13C";
  p.TRNUC = "15N";
  p.OBFRQ = 399.78f;
  p.OBSET = 12.5f;
  p.IRFRQ = 100.5f;
  p.TRFRQ = 40.5f;
  p.OBATN = 3;
  p.IRATN = 4;
  p.IRRPW = 5;
  p.TRATN = 6;
  p.TRRPW = 7;
  p.LOOP = {1, 2, 3, 4, 5};
  p.PS = {0.5f, 1.5f, 2.5f, 3.5f, 4.5f};
  p.PW = {8.5f, 9.5f, 10.5f, 11.5f, 12.5f};
  p.PI = {0.25f, 0.75f, 1.25f, 1.75f, 2.25f};
  p.ACQTM = 2.7f;
  p.PD = 1.5f;
  p.SCANS = 16;
  p.TIMES = 16;
  p.DUMMY = 2;
  p.TOSCN = 18;
  p.RGAIN = 24;
  p.ADBIT = 16;
  p.FILTR = 2000;
  p.CSPED = 15;
  p.CTEMP = 25.5f;
  p.TR = 3.25f;
  p.INIWT = 0.125f;
  p.DEADT = 6.25f;
  p.DELAY = 4.5f;
  p.INTVL = 0.5f;
  p.SLVNT = "CDCL3";
  p.EXMOD = "SINGLE PULSE";
  p.DATIM = "12-MAR-2021 10:11:12";
  p.COMNT = "エチルベンゼン\r\nsecond line";
  p.Instrument_Name = "TEST 400";
  p.Data_File = "/data/sample/ethyl.fid";
  p.Probe_Name = "5MM TH";
  p.Gradient_Program = "gp1";
  p.Pulse_Program = "zg30";
  p.Window_Code = 3;
  p.Pulse90 = 9.75f;
  p.Pulse90_2 = 11.25f;
  p.Irr_Frequency = 100.52345678;
  for (int k = 0; k < 32; ++k) {
    p.P_List[k] = 0.5f * k;
    p.D_List[k] = 0.25f * k;
    p.CNST_List[k] = 145.0f + k;
    p.Extra_List[k] = -1.0f * k;
  }
  s.Observe_Frequency = 399.78231234;
  s.Spectrum_Frequency = 399.78009876;
  s.Max_Abs = 123.5f;
  s.Y_Mag = 1.5f;
  s.Y_Offset = 0.125f;
  s.Fid_Scale = 0.0625f;
  s.X_Left = 10.5f;
  s.X_Right = -0.5f;

  s.Array_Rows = 2;
  Alloc_Point_Arrays(s, p.POINT);
  s.Spec_Points = p.POINT;
  for (int r = 0; r < 2; ++r)
    for (int i = 0; i < p.POINT; ++i) {
      s.Spec_Re(i, r) = static_cast<float>((i % 97) * 1.5 - r * 1000);
      s.Spec_Im(i, r) = static_cast<float>(-(i % 13) * 0.25 + r);
    }
  s.Delay_Name = "VD";
  s.Delay_Unit = "s";
  s.Delay_Linear = 0;
  s.Delay_Start = 0.01f;
  s.Delay_Step = 0.5f;
  s.Delay_List = {0.01f, 0.51f};
  s.Delay_Raw = {10.0f, 510.0f};
  s.Array_Row_Names = "row one\r\nrow two";
  s.Array_Sources = {{"ethyl_1.fid", "ethyl_1.par"}, {"ethyl_2.fid", "ethyl_2.par"}};

  for (int k = 0; k < 3; ++k) {
    Peak_Rec pk;
    pk.Point = 100 + 50 * k;
    pk.Freq_Hz = static_cast<float>(pk.Point * 3.90625 + 1.0);
    pk.Label_Dx = 0.25f * k;
    pk.Label_Dy = -0.5f * k;
    pk.Height = static_cast<int16_t>(10 + k);
    s.Peaks.push_back(pk);
  }
  s.Peak_Level = 0.3f;
  s.Noise_Level = 0.02f;
  s.Base_Level = 0.01f;

  for (int k = 0; k < 2; ++k) {
    Integ_Rec g;
    g.Start_Point = 200 + 100 * k;
    g.End_Point = 240 + 100 * k;
    g.B0 = 0.01f * k;
    g.B1 = -0.002f;
    g.Curve_Y = 0.1f + 0.1f * k;
    s.Integrals.push_back(g);
  }
  s.Integ_Cur = 1;
  s.Integ_Ref = 3.0f;
  s.Integ_Scale = 2.5f;
  s.Integ_Disp_Mode = 1;

  Inset_Rec in;
  in.Frame_X0 = 0.1f;
  in.Frame_X1 = 0.4f;
  in.Frame_Y0 = 0.5f;
  in.Frame_Y1 = 0.9f;
  in.Inset_Left = 3.5f;
  in.Inset_Right = 2.5f;
  in.Inset_X_Scale = 4;
  in.Inset_Y_Full = 50;
  in.Inset_Y_Offset = -0.25f;
  in.Inset_X_Mag = 3;
  in.Inset_Y_Mag = 5;
  in.Axis_Font.Face = "Arial";
  in.Axis_Font.Size = 9;
  in.Axis_Font.Bold = 1;
  in.Peak_Font.Face = "ＭＳ 明朝";
  in.Peak_Font.Size = 7;
  in.Peak_Font.Italic = 1;
  in.Integ_Font.Face = "Courier";
  in.Integ_Font.Size = 8;
  in.Fill_Colour = 0xF0F0F0;
  in.Line_Colour = 0x0000FF;
  in.Border_Colour = 0x00FF00;
  in.Show_Values = 1;
  in.Show_Tops = 1;
  in.Tick_Mode = 1;
  in.Tick_Step1 = 0.5f;
  in.Tick_Inc1 = 0.1f;
  in.Peak_Digit = 3;
  in.Integ_Expand = 2;
  in.Font_Mag = 1.25f;
  in.Peakline_Top = 0.75f;
  s.Insets = {in, Inset_Rec{}};
  s.Insets[1].Axis_Font.Face = "Arial";
  s.Insets[1].Peak_Font.Face = "Arial";
  s.Insets[1].Integ_Font.Face = "Arial";

  Text_Rec t;
  t.X = 0.25f;
  t.Y = 0.75f;
  t.Frame = {0.1f, 0.2f, 0.3f};
  t.Font_Name = "ＭＳ ゴシック";
  t.Font_Size = 12;
  t.Bold = 1;
  t.Text = "{\\b 太字} and plain";
  s.Texts = {t, t};
  s.Texts[1].Text = "second note";
  s.Texts[1].Font_Name = "Arial";

  Line_Rec l;
  l.X1 = 0.1f;
  l.Y1 = 0.2f;
  l.X2 = 0.3f;
  l.Y2 = 0.4f;
  l.Colour = 0x123456;
  l.Width = 3;
  l.Arrow_Width = 4;
  l.Kind = 2;
  l.Style = 5;
  s.Lines = {l};

  Image_Rec img;
  img.Left = 0.5f;
  img.Top = 0.25f;
  img.Width = 0.2f;
  img.Height = 0.1f;
  img.Extra = 7;
  for (int k = 0; k < 37; ++k) img.Body.push_back(static_cast<uint8_t>(k * 7));
  s.Images = {img, img};
  s.Images[1].Body.assign(100, 0xAB);
  s.Structure.Show = 1;
  s.Structure.Value_A = 0.5f;
  s.Structure.Value_B = 0.75f;
  s.Structure.Body.assign(64, 0x5A);

  s.Overlay_Shift = 0.25f;
  Overlay_Slot& o = s.Overlay[2];
  o.Slot_Points = 16;
  for (int i = 0; i < 16; ++i) {
    o.Slot_X.push_back(static_cast<float>(-1.0 + i * 0.0078125));
    o.Slot_Y.push_back(static_cast<float>(i * i));
  }
  o.Slot_Y_Offset = 0.2f;
  o.Slot_Y_Full = 80;
  o.Slot_Y_Mag = 1.25f;
  o.Slot_Max_Abs = 100;
  o.Slot_Show = 1;
  o.Slot_Show_Peaks = 1;
  o.Slot_Colour = 0xFF00FF;
  o.Slot_File = "/data/other.tv1";
  o.Slot_Comment = "重ね書き";
  o.Slot_Param.POINT = 16;
  o.Slot_Param.FREQU = 64;
  o.Slot_Param.RESOL = 4;
  o.Slot_Param.OBNUC = "1H";
  o.Slot_Param.EXMOD = "DEPT";
  o.Slot_Param.Pulse90 = 10;
  o.Slot_Param.SMODE = 1;
  o.Slot_Observe_Frequency = 399.5;
  o.Slot_Spectrum_Frequency = 399.4;
  o.Slot_Peaks = {Peak_Rec{2, 0.5f, 0, 9.0f, 3}};
  o.Slot_Integrals = {Integ_Rec{10, 4, 0.2f, 0.01f, 0, 0}};
  o.Slot_Peak_Level = 0.02f;
  o.Slot_Noise_Level = 0.004f;
  o.Slot_Integ_Ref = 3.0f;
  o.Slot_Integ_Scale = 0.5f;

  // Spare bytes as another version of the program may have left them.
  s.Native.Param.assign(2560, 0);
  s.Native.Param[256] = 0x11;  // spare 4 bytes
  s.Native.Param[160] = 'F';  // free text
  s.Native.Param[304] = 2;  // DTYPE
  s.Native.Page.assign(800, 0);
  s.Native.Page[62] = 9;  // spare int16
  s.Native.Page[528] = 'A';  // font name of the parameter font
  s.Native.Deconv_Page.assign(1040, 0);
  s.Native.Deconv_Page[1024] = 1;  // one fitted line
  s.Native.Deconv_Page[1028] = 0x42;
  s.Native.Relax_Page.assign(100, 0);
  s.Native.Relax_Page[60] = 3;
  s.Native.List_Page.assign(304, 0);
  s.Native.List_Page[272] = 'L';
  s.Native.Markers.assign(320, 0);
  s.Native.Markers[0] = 1;
  s.Native.Markers[8] = 2;
}

}  // namespace tevo::test
