// SPDX-License-Identifier: Apache-2.0
// Clicks and types through the window as its user does, from opening models to opening the saved
// results again, and keeps a picture of each state.
#include "KYCollisionBase/ui/KyCheckTestTool.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QProgressBar>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <gmock/gmock.h>

#include "ScratchFolder.h"
#include "ScriptedPrompts.h"
#include "desk/view/FilterBar.h"
#include "desk/view/KindTree.h"
#include "desk/view/MainWindow.h"
#include "desk/view/OpeningList.h"
#include "desk/view/ResultList.h"
#include "desk/view/ResultModel.h"
#include "desk/view/SceneView.h"
#include "desk/view/SystemRoot.h"

using desk::MainWindow;
using desk::ResultColumn;
using desk::UnsavedAnswer;

namespace {

// A cold machine under a sanitizer converts the sample in less (ms).
constexpr int kPatience = 300000;

QPalette DarkTheme() {
    QPalette palette;
    const QColor ground(0x24, 0x28, 0x2E);
    const QColor text(0xE6, 0xE9, 0xED);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(0x1B, 0x1F, 0x24));
    palette.setColor(QPalette::AlternateBase, QColor(0x22, 0x27, 0x2D));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0x2E, 0x33, 0x3A));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0x8A, 0x93, 0x9E));
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, QColor(0x2D, 0x6C, 0xB8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

class DeskFlow : public testing::Test {
  protected:
    DeskFlow() {
        desk::UseSystemRoot();
        script_.saveFile = QString::fromStdString((scratch_.Path() / "results.xml").string());
        Restart();
    }

    // A new window, as after the program was closed.
    void Restart() {
        window_.reset();
        desk::LoadOptions options;
        options.cacheDir = DESK_CACHE_DIR;
        window_ =
            std::make_unique<MainWindow>(options, "en", std::make_unique<ScriptedPrompts>(script_));
        window_->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get()));
    }

    template <class Widget>
    Widget& Get(const char* name) {
        auto* widget = window_->findChild<Widget*>(name);
        EXPECT_NE(widget, nullptr) << name;
        return *widget;
    }

    QAction& Action(const char* name) { return Get<QAction>(name); }

    // Clicks the tool button of an action.
    void Click(const char* name) {
        for (QToolBar* bar : window_->findChildren<QToolBar*>()) {
            if (QWidget* button = bar->widgetForAction(&Action(name))) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        FAIL() << "no button for " << name;
    }

    bool WaitForEnd() {
        return QTest::qWaitFor([this] { return !window_->IsBusy(); }, kPatience);
    }

    void OpenSample() {
        script_.models = {QStringLiteral(DESK_SAMPLE_IFC)};
        Click("openModels");
        ASSERT_TRUE(window_->IsBusy());
        ASSERT_TRUE(WaitForEnd());
        ASSERT_TRUE(script_.problems.isEmpty()) << script_.problems.join('\n').toStdString();
    }

    // A content that nobody has read yet, so that reading it takes its time.
    QString NewModel() {
        const auto file = scratch_.Path() / "new.ifc";
        std::filesystem::copy_file(DESK_SAMPLE_IFC, file);
        std::ofstream(file, std::ios::app) << "/* " << scratch_.Path().string() << " */\n";
        return QString::fromStdString(file.string());
    }

    void Check() {
        Click("run");
        ASSERT_TRUE(WaitForEnd());
    }

    desk::ResultList& List() { return Get<desk::ResultList>("results"); }
    int Rows() { return List().model()->rowCount(); }
    QString Cell(int row, ResultColumn column) {
        return List().model()->index(row, static_cast<int>(column)).data().toString();
    }

    void ClickRow(int row) {
        const QModelIndex cell =
            List().model()->index(row, static_cast<int>(ResultColumn::kMainKind));
        List().scrollTo(cell);
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualRect(cell).center());
    }

    // Types into a cell as a user does: F2, text, return.
    void TypeInto(int row, ResultColumn column, const QString& text) {
        List().setCurrentIndex(List().model()->index(row, static_cast<int>(column)));
        List().setFocus();
        QTest::keyClick(&List(), Qt::Key_F2);
        auto* editor = List().findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
    }

    void TypeFilter(const char* field, const QString& text) {
        auto& edit = Get<QLineEdit>(field);
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, text);
        QTest::qWait(300);
    }

    void Keep(const QString& name) {
        QTest::qWait(50);
        QDir().mkpath(DESK_SCREENSHOT_DIR);
        const QString platform = QGuiApplication::platformName();
        const QString file =
            QStringLiteral("%1/%2-%3.png").arg(DESK_SCREENSHOT_DIR, name, platform);
        ASSERT_TRUE(window_->grab().save(file)) << file.toStdString();
    }

    ScratchFolder scratch_;
    ScriptedPrompts::Script script_;
    std::unique_ptr<MainWindow> window_;
};

}  // namespace

TEST_F(DeskFlow, StartsEmptyWithNothingToRun) {
    EXPECT_FALSE(Action("run").isEnabled());
    EXPECT_FALSE(Action("stop").isEnabled());
    EXPECT_FALSE(Action("save").isEnabled());
    EXPECT_TRUE(Action("openModels").isEnabled());
    EXPECT_EQ(Rows(), 0);
    Keep("1-empty");
}

TEST_F(DeskFlow, KeepsWhatTheUserDidOverSavingAndOpening) {
    OpenSample();
    EXPECT_GT(Get<QListWidget>("floors").count(), 1);
    EXPECT_GT(Get<desk::OpeningList>("openings").GetItemCount(), 0);
    EXPECT_TRUE(Action("run").isEnabled());
    Keep("2-opened");

    Check();
    ASSERT_GT(Rows(), 3);
    EXPECT_TRUE(Action("save").isEnabled());
    EXPECT_TRUE(window_->isWindowModified());
    Keep("3-checked");
    const int found = Rows();

    ClickRow(1);
    EXPECT_TRUE(Get<QLabel>("detailMain").isVisible());
    EXPECT_FALSE(Get<QLabel>("detailMain").text().isEmpty());
    Keep("4-clash");
    const QString name = Cell(1, ResultColumn::kMainName);
    const QString second = Cell(1, ResultColumn::kSecondName);

    QTest::keyClick(&List(), Qt::Key_2);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Resolved");
    TypeInto(1, ResultColumn::kRemark, "duct goes <below> the \"beam\" & back");
    Keep("5-edited");

    // A new run keeps what was edited.
    Check();
    ASSERT_EQ(Rows(), found);
    EXPECT_EQ(Cell(1, ResultColumn::kMainName), name);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Resolved");

    Click("save");
    EXPECT_FALSE(window_->isWindowModified());
    EXPECT_TRUE(script_.problems.isEmpty()) << script_.problems.join('\n').toStdString();

    Restart();
    script_.resultFile = script_.saveFile;
    Click("openResults");
    ASSERT_TRUE(WaitForEnd());
    EXPECT_TRUE(script_.problems.isEmpty()) << script_.problems.join('\n').toStdString();
    ASSERT_EQ(Rows(), found);
    EXPECT_EQ(Cell(1, ResultColumn::kMainName), name);
    EXPECT_EQ(Cell(1, ResultColumn::kSecondName), second);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Resolved");
    EXPECT_EQ(Cell(1, ResultColumn::kRemark), "duct goes <below> the \"beam\" & back");
    EXPECT_FALSE(window_->isWindowModified());
    ASSERT_NE(window_->CurrentSession().Workset(), nullptr);
    ClickRow(1);
    Action("section").trigger();
    Keep("6-reopened-section");
}

TEST_F(DeskFlow, StopsARunAndRunsAgain) {
    // The same building several times over keeps a run busy long enough to be stopped.
    for (int copy = 0; copy < 6; ++copy) {
        const auto file = scratch_.Path() / ("copy" + std::to_string(copy) + ".ifc");
        std::filesystem::copy_file(DESK_SAMPLE_IFC, file);
        script_.models << QString::fromStdString(file.string());
    }
    Click("openModels");
    ASSERT_TRUE(WaitForEnd());
    Action("run").trigger();
    Action("stop").trigger();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_TRUE(Get<QLabel>("message").text().contains("stopped")) << "the run was too quick";
    EXPECT_FALSE(Action("stop").isEnabled());
    Keep("7-stopped");
    const int partial = Rows();
    Check();
    EXPECT_GT(Rows(), partial);
    EXPECT_TRUE(Get<QLabel>("message").text().contains("done"));
}

TEST_F(DeskFlow, StopsTheReadingOfModels) {
    script_.models = {NewModel()};
    Action("openModels").trigger();
    Action("stop").trigger();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(window_->CurrentSession().Workset(), nullptr);
    EXPECT_TRUE(script_.problems.isEmpty());
    EXPECT_TRUE(Action("openModels").isEnabled());
}

TEST_F(DeskFlow, AnswersWhileItIsBusy) {
    script_.models = {NewModel()};
    Action("openModels").trigger();
    ASSERT_TRUE(window_->IsBusy());
    EXPECT_TRUE(Get<QProgressBar>("progress").isVisible());
    TypeFilter("filterText", "abc");
    EXPECT_EQ(Get<QLineEdit>("filterText").text(), "abc");
    EXPECT_FALSE(Action("openModels").isEnabled());
    EXPECT_TRUE(WaitForEnd());
    EXPECT_FALSE(Get<QProgressBar>("progress").isVisible());
}

TEST_F(DeskFlow, SaysWhichModelCannotBeRead) {
    const auto broken = scratch_.Write("broken.ifc", "this is no IFC file");
    script_.models = {QString::fromStdString(broken.string())};
    Action("openModels").trigger();
    ASSERT_TRUE(WaitForEnd());
    ASSERT_EQ(script_.problems.size(), 1);
    EXPECT_TRUE(script_.problems.front().contains("broken.ifc"));
    EXPECT_EQ(window_->CurrentSession().Workset(), nullptr);
}

TEST_F(DeskFlow, FiltersSortsAndCounts) {
    OpenSample();
    Check();
    const int all = Rows();
    TypeFilter("filterText", "duct");
    const int ducts = Rows();
    EXPECT_GT(ducts, 0);
    EXPECT_LT(ducts, all);
    EXPECT_TRUE(Get<QLabel>("counts").text().contains(" of "));
    Keep("8-filtered");
    TypeFilter("filterText", "no such thing");
    EXPECT_EQ(Rows(), 0);
    EXPECT_FALSE(Get<QLabel>("detailMain").isVisible());
    window_->findChild<desk::FilterBar*>()->Clear();
    EXPECT_EQ(Rows(), all);

    auto& floor = Get<QComboBox>("filterFloor");
    ASSERT_GT(floor.count(), 1);
    floor.setCurrentIndex(1);
    emit floor.activated(1);
    EXPECT_GT(Rows(), 0);
    for (int row = 0; row < Rows(); ++row)
        EXPECT_EQ(Cell(row, ResultColumn::kFloor), floor.currentText());
    window_->findChild<desk::FilterBar*>()->Clear();

    List().sortByColumn(static_cast<int>(ResultColumn::kMainName), Qt::DescendingOrder);
    for (int row = 1; row < Rows(); ++row) {
        EXPECT_LE(Cell(row, ResultColumn::kMainName).toStdWString(),
                  Cell(row - 1, ResultColumn::kMainName).toStdWString());
    }
}

TEST_F(DeskFlow, ChecksOnlyTheKindsThatAreChecked) {
    OpenSample();
    Check();
    const int all = Rows();
    auto& kinds = Get<desk::KindTree>("kinds");
    const HTREEITEM root = kinds.GetRootItem();
    // All but the first specialty lose their tick; nothing is left to clash with.
    for (HTREEITEM spec = kinds.GetNextSiblingItem(kinds.GetChildItem(root)); spec != nullptr;
         spec = kinds.GetNextSiblingItem(spec)) {
        kinds.SetCheck(spec, false);
    }
    EXPECT_EQ(kinds.GetCheckState(root), CThreeStateTree::CheckState::kPartial);
    ASSERT_GT(all, 0);
    Check();
    EXPECT_EQ(Rows(), 0);
    kinds.SetCheck(root, false);
    EXPECT_FALSE(Action("run").isEnabled());
}

TEST_F(DeskFlow, AsksAboutUnsavedResults) {
    OpenSample();
    Check();
    script_.unsaved = UnsavedAnswer::kCancel;
    EXPECT_FALSE(window_->close());
    EXPECT_EQ(script_.unsavedAsked, 1);
    EXPECT_TRUE(window_->isVisible());

    Action("openModels").trigger();
    EXPECT_EQ(script_.unsavedAsked, 2);
    EXPECT_FALSE(window_->IsBusy());

    script_.unsaved = UnsavedAnswer::kSave;
    EXPECT_TRUE(window_->close());
    EXPECT_TRUE(std::filesystem::exists(scratch_.Path() / "results.xml"));
    EXPECT_TRUE(std::filesystem::exists(scratch_.Path() / "results.models.json"));
}

TEST_F(DeskFlow, ClosesWithoutSavingWhenTold) {
    OpenSample();
    Check();
    script_.unsaved = UnsavedAnswer::kDiscard;
    EXPECT_TRUE(window_->close());
    EXPECT_FALSE(std::filesystem::exists(scratch_.Path() / "results.xml"));
}

TEST_F(DeskFlow, StaysOpenWhenSavingFails) {
    OpenSample();
    Check();
    script_.unsaved = UnsavedAnswer::kSave;
    script_.saveFile = QString::fromStdString((scratch_.Path() / "no folder/r.xml").string());
    EXPECT_FALSE(window_->close());
    ASSERT_EQ(script_.problems.size(), 1);
    EXPECT_TRUE(script_.problems.front().contains("r.xml"))
        << script_.problems.front().toStdString();
    EXPECT_TRUE(window_->isWindowModified());
}

TEST_F(DeskFlow, SaysWhatIsWrongWithAResultFile) {
    const auto broken = scratch_.Write("broken.xml", "<a><b></a>");
    script_.resultFile = QString::fromStdString(broken.string());
    Click("openResults");
    ASSERT_EQ(script_.problems.size(), 1);
    EXPECT_TRUE(script_.problems.front().contains("broken.xml"))
        << script_.problems.front().toStdString();
}

TEST_F(DeskFlow, AsksForTheModelsOfResultsThatDoNotNameThem) {
    OpenSample();
    Check();
    const int found = Rows();
    Click("save");
    std::filesystem::remove(scratch_.Path() / "results.models.json");
    Restart();
    script_.modelsAsked = 0;
    script_.resultFile = script_.saveFile;
    Click("openResults");
    EXPECT_EQ(script_.modelsAsked, 1);
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(Rows(), found);
    EXPECT_NE(window_->CurrentSession().Workset(), nullptr);
}

TEST_F(DeskFlow, DrawsTheSelectedClashThroughTheDiagnosticTool) {
    OpenSample();
    Check();
    EXPECT_EQ(KyCheckTestTool::Instance()->GetQGNIContext(), &window_->View().Diagnostics());
    ClickRow(0);
    const auto& root = *window_->View().Diagnostics().Scene().Root().Children().at(0);
    // Two boxes of twelve edges and the circle of the point.
    ASSERT_EQ(root.Children().size(), 3U);
    EXPECT_EQ(root.Children()[0]->Primitives().size(), 12U);
    EXPECT_EQ(root.Children()[1]->Primitives().size(), 12U);
    EXPECT_EQ(root.Children()[2]->Primitives().size(), 1U);
    ClickRow(1);
    EXPECT_EQ(root.Children().size(), 3U);
}

TEST_F(DeskFlow, KeepsAViewWithItsClash) {
    OpenSample();
    Check();
    ClickRow(0);
    desk::SceneView& view = window_->View();
    const desk::Camera fitted = view.CurrentCamera();
    desk::Camera turned = fitted;
    turned.Orbit(0.7F, 0.2F);
    turned.Zoom(1.5F);
    view.SetCamera(turned);
    Click("keepView");
    ClickRow(1);
    EXPECT_NE(view.CurrentCamera().ToText(), turned.ToText());
    ClickRow(0);
    EXPECT_EQ(view.CurrentCamera().ToText(), turned.ToText());
}

TEST_F(DeskFlow, TurnsMovesAndZoomsTheView) {
    OpenSample();
    desk::SceneView& view = window_->View();
    const QPoint middle = view.rect().center();
    const auto drag = [&](Qt::MouseButton button, QPoint by) {
        QTest::mousePress(&view, button, {}, middle);
        QMouseEvent move(QEvent::MouseMove, middle + by, view.mapToGlobal(middle + by), button,
                         button, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &move);
        QTest::mouseRelease(&view, button, {}, middle + by);
    };
    const desk::Camera before = view.CurrentCamera();
    drag(Qt::LeftButton, {60, 10});
    EXPECT_EQ(view.CurrentCamera().Target(), before.Target());
    EXPECT_NE(view.CurrentCamera().Position(), before.Position());
    drag(Qt::RightButton, {40, 0});
    EXPECT_NE(view.CurrentCamera().Target(), before.Target());
    QWheelEvent wheel(middle, view.mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view, &wheel);
    EXPECT_LT(view.CurrentCamera().Distance(), before.Distance());
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.CurrentCamera().Target(), before.Target());
    QTest::keyClick(&view, Qt::Key_Left);
    QTest::keyClick(&view, Qt::Key_Minus);
    EXPECT_GT(view.CurrentCamera().Distance(), before.Distance());
}

TEST_F(DeskFlow, IsReadableInADarkTheme) {
    window_->setPalette(DarkTheme());
    OpenSample();
    Check();
    ClickRow(0);
    QTest::keyClick(&List(), Qt::Key_1);
    ClickRow(2);
    Keep("9-dark");
    // Light text on a dark ground, also where rows have colours of their own.
    const COLORREF color = List().OnGetCellTextColor(0, 0);
    EXPECT_GT(GetRValue(color) + GetGValue(color) + GetBValue(color), 3 * 128);
}

TEST_F(DeskFlow, WorksFromRightToLeft) {
    window_->setLayoutDirection(Qt::RightToLeft);
    OpenSample();
    Check();
    ClickRow(0);
    EXPECT_EQ(List().currentIndex().row(), 0);
    Keep("10-right-to-left");
    EXPECT_GT(Get<desk::KindTree>("kinds").mapTo(window_.get(), QPoint()).x(),
              List().mapTo(window_.get(), QPoint()).x());
}

TEST_F(DeskFlow, ShowsTheOpenings) {
    OpenSample();
    Get<QTabWidget>("pages").setCurrentIndex(1);
    Keep("11-openings");
    auto& openings = Get<desk::OpeningList>("openings");
    EXPECT_GT(openings.GetItemCount(), 0);
    EXPECT_NE(openings.GetItemText(0, 0), L"");
    EXPECT_NE(openings.GetItemText(0, 1), L"");
}

TEST_F(DeskFlow, OpensAndClosesTheTreeByLevel) {
    OpenSample();
    auto& kinds = Get<desk::KindTree>("kinds");
    const HTREEITEM root = kinds.GetRootItem();
    ASSERT_NE(kinds.GetItemState(root, TVIS_EXPANDED), 0U);
    const HTREEITEM specialty = kinds.GetChildItem(root);
    EXPECT_EQ(kinds.GetItemState(specialty, TVIS_EXPANDED), 0U);
    Click("expandLevel");
    EXPECT_NE(kinds.GetItemState(specialty, TVIS_EXPANDED), 0U);
    Keep("12-tree");
    Click("collapseLevel");
    EXPECT_EQ(kinds.GetItemState(specialty, TVIS_EXPANDED), 0U);
}
