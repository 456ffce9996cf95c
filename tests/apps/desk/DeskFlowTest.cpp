// SPDX-License-Identifier: Apache-2.0
// Clicks and types through the window as its user does, from opening models to opening the saved
// results again, and keeps a picture of each state.
#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"
#include "KYCollisionBase/ui/KyCheckTestTool.h"

#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QWheelEvent>
#include <algorithm>

#include "DeskFlow.h"
#include "desk/view/FilterBar.h"
#include "desk/view/KindTree.h"
#include "desk/view/NotesPane.h"
#include "desk/view/OpeningList.h"
#include "desk/view/SceneView.h"

using desk::UnsavedAnswer;

namespace {

// What the sample's plan and the reviewed result files say.
constexpr int kClashesByDefaultRules = 13;

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
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x6A, 0x73, 0x7D));
    return palette;
}

}  // namespace

TEST_F(DeskFlow, StartsEmptyWithNothingToRun) {
    EXPECT_FALSE(Action("run").isEnabled());
    EXPECT_FALSE(Action("stop").isEnabled());
    EXPECT_FALSE(Action("save").isEnabled());
    EXPECT_TRUE(Action("openModels").isEnabled());
    EXPECT_EQ(Rows(), 0);
    EXPECT_TRUE(Get<QLabel>("resultHint").text().contains("Open models"));
    EXPECT_TRUE(Get<QLabel>("detailHint").isVisible());
    Keep("1-empty");
}

TEST_F(DeskFlow, KeepsWhatTheUserDidOverSavingAndOpening) {
    OpenSample();
    EXPECT_GT(Get<CThreeStateTree>("floors").GetCount(), 1U);
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
    ClickRow(5);
    QTest::keyClick(&List(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&List(), Qt::Key_1);
    EXPECT_EQ(Cell(5, ResultColumn::kState), "Assigned");
    EXPECT_EQ(Cell(6, ResultColumn::kState), "Assigned") << "all selected rows get the state";
    ClickRow(9);
    QTest::keyClick(&List(), Qt::Key_3);
    EXPECT_EQ(Cell(9, ResultColumn::kState), "Accepted");
    ClickRow(2);
    List().horizontalScrollBar()->setValue(0);
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
    EXPECT_TRUE(Get<QLabel>("resultHint").text().contains("filters"));
    EXPECT_TRUE(Get<QLabel>("resultHint").isVisible());
    EXPECT_FALSE(Get<QLabel>("detailMain").isVisible());
    window_->findChild<desk::FilterBar*>()->Clear();
    EXPECT_EQ(Rows(), all);
    EXPECT_FALSE(Get<QLabel>("resultHint").isVisible());

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

TEST_F(DeskFlow, KeepsTheSelectedClashOverFilterOrderAndRun) {
    OpenSample();
    Check();
    ClickRow(4);
    const QString second = Cell(4, ResultColumn::kSecondName);
    const auto current = [&] {
        return Cell(List().currentIndex().row(), ResultColumn::kSecondName);
    };
    desk::Camera turned = window_->View().CurrentCamera();
    turned.Orbit(0.7F, 0.2F);
    window_->View().SetCamera(turned);

    TypeFilter("filterText", second);
    EXPECT_EQ(current(), second);
    List().sortByColumn(static_cast<int>(ResultColumn::kMainName), Qt::DescendingOrder);
    EXPECT_EQ(current(), second);
    EXPECT_EQ(window_->View().CurrentCamera().ToText(), turned.ToText())
        << "the same clash is looked at as before";
    TypeFilter("filterText", "");
    Check();
    EXPECT_EQ(current(), second);
    EXPECT_TRUE(Get<QLabel>("detailMain").isVisible());

    TypeFilter("filterText", "no such thing");
    EXPECT_FALSE(List().currentIndex().isValid());
    EXPECT_FALSE(Action("keepView").isEnabled());
}

TEST_F(DeskFlow, SearchesTheClashesFromEveryPage) {
    OpenSample();
    auto& pages = Get<QTabWidget>("pages");
    pages.setCurrentIndex(2);
    Action("find").trigger();
    EXPECT_EQ(pages.currentIndex(), 0);
    EXPECT_TRUE(Get<QLineEdit>("filterText").isVisible());
}

// By the tabulator key, from left to right and from top to bottom.
TEST_F(DeskFlow, IsWalkedThroughInTheOrderInWhichItIsRead) {
    std::vector<const QWidget*> stations = {&Get<CThreeStateTree>("kinds"),
                                            &Get<CThreeStateTree>("floors"),
                                            Get<QTabWidget>("pages").tabBar(),
                                            &Get<QLineEdit>("filterText"),
                                            &List(),
                                            &window_->View()};
    std::vector<const QWidget*> met;
    const QWidget* widget = stations.front();
    do {
        if (std::find(stations.begin(), stations.end(), widget) != stations.end())
            met.push_back(widget);
        widget = widget->nextInFocusChain();
    } while (widget != stations.front());
    EXPECT_EQ(met, stations);
}

TEST_F(DeskFlow, ChecksOnlyTheKindsThatAreChecked) {
    OpenSample();
    Check();
    auto& kinds = Get<desk::KindTree>("kinds");
    const HTREEITEM root = kinds.GetRootItem();
    // All but the first specialty, the civil works, lose their tick. Of the planned clashes only
    // the stair flight in the roof slab is one of these among themselves.
    for (HTREEITEM spec = kinds.GetNextSiblingItem(kinds.GetChildItem(root)); spec != nullptr;
         spec = kinds.GetNextSiblingItem(spec)) {
        kinds.SetCheck(spec, false);
    }
    EXPECT_EQ(kinds.GetCheckState(root), CThreeStateTree::CheckState::kPartial);
    Check();
    ASSERT_EQ(Rows(), 1);
    EXPECT_EQ(Cell(0, ResultColumn::kMainName), "Slab Roof");
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
    ASSERT_TRUE(WaitForEnd());
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
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(script_.modelsAsked, 1);
    EXPECT_EQ(Rows(), found);
    EXPECT_NE(window_->CurrentSession().Workset(), nullptr);
}

TEST_F(DeskFlow, TakesNoEditsOfResultsThatOtherModelsReplace) {
    OpenSample();
    Check();
    ClickRow(1);
    script_.unsaved = UnsavedAnswer::kDiscard;
    script_.models = {NewModel()};
    Action("openModels").trigger();
    ASSERT_TRUE(window_->IsBusy());
    QTest::keyClick(&List(), Qt::Key_2);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Open");
    EXPECT_FALSE(Action("keepView").isEnabled());

    // The models do not come, and the results stay.
    Action("stop").trigger();
    ASSERT_TRUE(WaitForEnd());
    QTest::keyClick(&List(), Qt::Key_2);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Resolved");
    EXPECT_TRUE(Action("keepView").isEnabled());
}

TEST_F(DeskFlow, TakesNoEditsOfResultsThatOthersReplace) {
    OpenSample();
    Check();
    Click("save");
    ClickRow(1);
    script_.resultFile = script_.saveFile;
    Action("openResults").trigger();
    ASSERT_TRUE(window_->IsBusy());
    QTest::keyClick(&List(), Qt::Key_2);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Open");
    ASSERT_TRUE(WaitForEnd());
    QTest::keyClick(&List(), Qt::Key_2);
    EXPECT_EQ(Cell(1, ResultColumn::kState), "Resolved");
}

TEST_F(DeskFlow, SavesTheRemarkThatIsBeingTyped) {
    OpenSample();
    Check();
    QPointer<QLineEdit> editor;
    ASSERT_NO_FATAL_FAILURE(StartTyping(1, ResultColumn::kRemark, "move it", editor));
    Action("save").trigger();
    EXPECT_EQ(Cell(1, ResultColumn::kRemark), "move it");
    EXPECT_FALSE(window_->isWindowModified());
    EXPECT_TRUE(window_->close()) << "nothing is left to ask about";
    EXPECT_EQ(script_.unsavedAsked, 0);
}

TEST_F(DeskFlow, KeepsTheRemarkThatIsBeingTypedWhenACheckEnds) {
    OpenSample();
    Check();
    Action("run").trigger();
    ASSERT_TRUE(window_->IsBusy());
    QPointer<QLineEdit> editor;
    ASSERT_NO_FATAL_FAILURE(StartTyping(1, ResultColumn::kRemark, "move it", editor));
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(Cell(1, ResultColumn::kRemark), "move it");
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

TEST_F(DeskFlow, WritesTheDrawingOfAClashToAFile) {
    OpenSample();
    Check();
    ClickRow(0);
    Click("export");
    EXPECT_TRUE(script_.problems.isEmpty()) << "the user thought better of it";

    script_.drawingFile = QString::fromStdString((scratch_.Path() / "clash.gltf").string());
    Click("export");
    EXPECT_TRUE(script_.problems.isEmpty());
    const auto scene =
        QJsonDocument::fromJson(QByteArray::fromStdString(scratch_.Read("clash.gltf")));
    EXPECT_EQ(scene["meshes"].toArray().size(), 3) << "two boxes and the point";

    script_.drawingFile = QString::fromStdString((scratch_.Path() / "no folder/c.gltf").string());
    Click("export");
    ASSERT_EQ(script_.problems.size(), 1);
    EXPECT_TRUE(script_.problems.front().contains("c.gltf"));
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

TEST_F(DeskFlow, ChecksByTheDefaultRulesUnlessOthersAreChosen) {
    OpenSample();
    Check();
    EXPECT_EQ(Rows(), kClashesByDefaultRules);
    EXPECT_TRUE(Get<desk::NotesPane>("notes").toPlainText().contains("default.xml"));

    // Ducts and pipes of the chosen file see nothing but the columns.
    const auto rules = scratch_.Write("columns.xml", R"(<CollisionRule>
        <Specialty name="土建"><RuleItem gjtype="土建/柱/砼柱" isvalid="true"/></Specialty>
        <Specialty name="消防"><RuleItem gjtype="消防/管网/喷淋管" isvalid="true"/></Specialty>
        </CollisionRule>)");
    script_.ruleFile = QString::fromStdString(rules.string());
    Click("rules");
    Check();
    ASSERT_EQ(Rows(), 1);
    EXPECT_EQ(Cell(0, ResultColumn::kMainName), "Column F2 3/C");
    EXPECT_EQ(Cell(0, ResultColumn::kSecondName), "SP test line F2");
    EXPECT_TRUE(Get<desk::NotesPane>("notes").toPlainText().contains("土建/墙/砖内墙"))
        << "the kinds that the file has no rule for";
}

TEST_F(DeskFlow, SaysWhatIsWrongWithARuleFileAndKeepsTheResults) {
    OpenSample();
    Check();
    const auto broken = scratch_.Write("broken-rules.xml", "<CollisionRule>");
    script_.ruleFile = QString::fromStdString(broken.string());
    Click("rules");
    Check();
    ASSERT_EQ(script_.problems.size(), 1);
    EXPECT_TRUE(script_.problems.front().contains("broken-rules.xml"))
        << script_.problems.front().toStdString();
    EXPECT_EQ(Rows(), kClashesByDefaultRules);
}

TEST_F(DeskFlow, NotesWhatOfTheModelsTakesNoPart) {
    OpenSample();
    auto& notes = Get<desk::NotesPane>("notes");
    EXPECT_GT(notes.Count(), 0);
    EXPECT_TRUE(notes.toPlainText().contains("building.ifc: not checked:"))
        << notes.toPlainText().toStdString();
    auto& pages = Get<QTabWidget>("pages");
    EXPECT_TRUE(pages.tabText(pages.indexOf(&notes)).contains(QString::number(notes.Count())));
    pages.setCurrentWidget(&notes);
    Keep("15-notes");
}

TEST_F(DeskFlow, ShowsTheSelectedOpeningInTheModel) {
    OpenSample();
    auto& openings = Get<desk::OpeningList>("openings");
    Get<QTabWidget>("pages").setCurrentWidget(&openings);
    const desk::Camera before = window_->View().CurrentCamera();
    openings.setCurrentIndex(openings.model()->index(0, 0));
    EXPECT_NE(window_->View().CurrentCamera().ToText(), before.ToText());
    const auto& root = *window_->View().Diagnostics().Scene().Root().Children().at(0);
    ASSERT_EQ(root.Children().size(), 1U);
    EXPECT_EQ(root.Children()[0]->Primitives().size(), 12U);
    EXPECT_TRUE(Action("fitClash").isEnabled());
    EXPECT_FALSE(Action("keepView").isEnabled()) << "a view is kept with a clash";
    Keep("16-opening");
    Get<QTabWidget>("pages").setCurrentIndex(0);
    EXPECT_FALSE(Action("fitClash").isEnabled());
    EXPECT_TRUE(root.Children().empty()) << "no clash is selected";
}

TEST_F(DeskFlow, AppliesATypedFilterAlsoWithoutTheReturnKey) {
    OpenSample();
    Check();
    QTest::keyClicks(&Get<QLineEdit>("filterText"), "no such thing");
    EXPECT_TRUE(QTest::qWaitFor([this] { return Rows() == 0; }, kPatience));
}

TEST_F(DeskFlow, RemembersHowTheWindowWasArranged) {
    QSettings settings(QString::fromStdString((scratch_.Path() / "layout.ini").string()),
                       QSettings::IniFormat);
    Get<QSplitter>("columns").setSizes({300, 500, 700});
    List().setColumnWidth(3, 77);
    const QList<int> sizes = Get<QSplitter>("columns").sizes();
    window_->KeepLayout(settings);
    Restart();
    window_->RestoreLayout(settings);
    EXPECT_EQ(List().columnWidth(3), 77);
    EXPECT_EQ(Get<QSplitter>("columns").sizes(), sizes);
}
