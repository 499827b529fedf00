#include "menu_tree.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace tevo::app {

const std::vector<Menu_Item>& Menu_Tree() {
  // Captions of the file menu start with "*" or two blanks: both are part of
  // the caption. The rows of m18X (m182_k) stand for overlay slot k, those
  // of m28 (m2101_n) and m273 (m2731_n) for slot 10 - n; the recent files
  // are added at run time under their parent.
  static const std::vector<Menu_Item> items = {
      {"NM1D_m1", "", "ﾌｧｲﾙ (&F)"},
      {"NM1D_m11", "NM1D_m1", "*読込 (&O)"},
      {"NM1D_m112", "NM1D_m1", "  CSV形式Dataの読み込み"},
      {"NM1D_m111", "NM1D_m1", "  読込(T1/T2個別ファイル)"},
      {"m12", "NM1D_m1", "  MO(EX,GX,GSX)読込 (&M)"},
      {"m121", "NM1D_m1", "  ﾕｰｻﾞｰ設定のﾌｧｲﾙﾀｲﾌﾟ (&F)"},
      {"m122", "NM1D_m1", "  拡張子のUser設定"},
      {"m47", "NM1D_m1", "  解析出来るファイルについて"},
      {"m1001", "NM1D_m1", "-"},
      {"m10", "NM1D_m1", "*名前を付けて保存(*.TV1) (&R)"},
      {"m13", "NM1D_m1", "  名前を付けて保存(*.ALS) (&S)"},
      {"m18", "NM1D_m1", "  ASCII 形式で保存 (&A)"},
      {"m18X", "NM1D_m1", "  重書をASCII 形式で保存"},
      {"m182_1", "m18X", "スペクトル(2)"},
      {"m182_2", "m18X", "スペクトル(3)"},
      {"m182_3", "m18X", "スペクトル(4)"},
      {"m182_4", "m18X", "スペクトル(5)"},
      {"m182_5", "m18X", "スペクトル(6)"},
      {"m182_6", "m18X", "スペクトル(7)"},
      {"m182_7", "m18X", "スペクトル(8)"},
      {"m182_8", "m18X", "スペクトル(9)"},
      {"m182_9", "m18X", "スペクトル(10)"},
      {"m181", "NM1D_m1", "  JCAMP(拡張)形式で保存"},
      {"m183", "NM1D_m1", "  JCAMP(縮小) 形式で保存 (&J)"},
      {"m131", "NM1D_m1", "  積分曲線を保存(ASCII 形式) (&I)"},
      {"m1002", "NM1D_m1", "-"},
      {"m14_1", "NM1D_m1", "*印刷（スペクトル）・プレビュー・編集"},
      {"m15", "NM1D_m1", "  ピークリストの印刷"},
      {"m17", "NM1D_m1", "  積分値リストの印刷"},
      {"m172", "NM1D_m1", "  ピークリストの保存"},
      {"m173", "NM1D_m1", "  積分値リストの保存"},
      {"m171", "NM1D_m1", "  Array積分値リストの印刷"},
      {"m16", "NM1D_m1", "  プリンタ－の設定 (&U)"},
      {"m1003", "NM1D_m1", "-"},
      {"RecentFile", "NM1D_m1", ""},
      {"m102", "NM1D_m1", "  履歴の削除"},
      {"m1004", "NM1D_m1", "-"},
      {"m19", "NM1D_m1", "*終了 (&X)"},

      {"m2", "", "編集(&E)"},
      {"m20", "m2", "取り消し"},
      {"m22", "m2", "位相補正(Phase) (&P)", true},
      {"m21", "m2", "Reference設定 (&R)", true},
      {"m28", "m2", "Reference設定(重ね書き)"},
      {"m2101_9", "m28", "スペクトル(2)"},
      {"m2101_8", "m28", "スペクトル(3)"},
      {"m2101_7", "m28", "スペクトル(4)"},
      {"m2101_6", "m28", "スペクトル(5)"},
      {"m2101_5", "m28", "スペクトル(6)"},
      {"m2101_4", "m28", "スペクトル(7)"},
      {"m2101_3", "m28", "スペクトル(8)"},
      {"m2101_2", "m28", "スペクトル(9)"},
      {"m2101_1", "m28", "スペクトル(10)"},
      {"m23", "m2", "ベースライン補正 (&B)", true},
      {"m24", "m2", "ピーク検出 (&T)", true},
      {"m25", "m2", "積分 (&I)", true},
      {"m26", "m2", "拡大図の添付 (&M)", true},
      {"m27", "m2", "ｽﾍﾟｸﾄﾙの重ね書き (&S)"},
      {"m273", "m2", "重ね書きの編集"},
      {"m2731_9", "m273", "スペクトル(2)"},
      {"m2731_8", "m273", "スペクトル(3)"},
      {"m2731_7", "m273", "スペクトル(4)"},
      {"m2731_6", "m273", "スペクトル(5)"},
      {"m2731_5", "m273", "スペクトル(6)"},
      {"m2731_4", "m273", "スペクトル(7)"},
      {"m2731_3", "m273", "スペクトル(8)"},
      {"m2731_2", "m273", "スペクトル(9)"},
      {"m2731_1", "m273", "スペクトル(10)"},
      {"m271", "m2", "差スペクトル (&D)"},
      {"m272", "m2", "DEPT 微調整"},
      {"m291", "m2", "スペクトルの左右反転 (&I)"},
      {"m292", "m2", "パラメータの修正 (&E)"},
      {"m209", "m2", "データの履歴"},

      {"m3", "", "表示/環境(&D)"},
      {"m31", "m3", "表示範囲の変更 (&D)"},
      {"m331", "m3", "編集用表示  Font・色･線の変更(&L)"},
      {"m332", "m3", "印刷用　Font・色･線の変更"},
      {"m30", "m3", "グリッドの設定"},
      {"m32", "m3", "動作環境の設定(&A)"},
      {"m35", "m3", "全てを表示 (&W)"},
      {"m36", "m3", "表示するもの"},
      {"m361", "m36", "積分曲線", true},
      {"m368", "m36", "積分のベースライン", true},
      {"m362", "m36", "ピーク位置", true},
      {"m365", "m36", "ピークトップマーク", true},
      {"m366", "m36", "ピーク番号", true},
      {"m363", "m36", "拡大図", true},
      {"m364", "m36", "重ね書き", true},
      {"m367", "m36", "グリッド", true},
      {"m37", "m3", "ピーク位置の表示場所"},
      {"m371", "m37", "スペクトルの上", true},
      {"m372", "m37", "スペクトルの下", true},
      {"m38", "m3", "ピーク間距離/ピークデータ"},
      {"m39", "m3", "構造式・イメージの表示"},
      {"m34", "m3", "Powerスペクトル表示", true},

      {"m6", "", "Array(T1/T2)データ(&A)"},
      {"m341", "m6", "Array表示"},
      {"m342", "m6", "Arrayデータのプロパティ"},
      {"m293", "m6", "Arrayパラメータ"},
      {"m61", "m6", "Arrayの印刷"},
      {"m52", "m6", "T1/T2 解析"},

      {"m5", "", "ピーク(波形)分離(&P)"},
      {"m51", "m5", "ピーク(波形)分離"},

      {"m40", "", "その他 (&H)"},
      {"m42", "m40", "パラメータファイル"},
      {"m43", "m40", "操作者"},
      {"m44", "m40", "装置データ"},
      {"m41", "m40", "バージョン情報"},
      {"m45", "m40", "ユーザー情報"},
      {"m46", "m40", "メモ"},
  };
  return items;
}

std::map<std::string, QAction*> Build_Menus(QMenuBar* bar) {
  std::map<std::string, QAction*> actions;
  std::map<std::string, QMenu*> menus;
  // An item is a menu when another item names it as parent.
  std::map<std::string, bool> is_menu;
  for (const auto& item : Menu_Tree()) is_menu[item.parent] = true;

  for (const auto& item : Menu_Tree()) {
    const QString caption = QString::fromUtf8(item.caption);
    const std::string parent = item.parent;
    if (is_menu[item.id]) {
      QMenu* menu = parent.empty() ? bar->addMenu(caption) : menus.at(parent)->addMenu(caption);
      menu->setObjectName(QString::fromUtf8(item.id));
      menus[item.id] = menu;
      actions[item.id] = menu->menuAction();
      continue;
    }
    QMenu* holder = menus.at(parent);
    QAction* action = std::string(item.caption) == "-" ? holder->addSeparator() : holder->addAction(caption);
    action->setObjectName(QString::fromUtf8(item.id));
    action->setCheckable(item.checkable);
    actions[item.id] = action;
  }
  return actions;
}

}  // namespace tevo::app
