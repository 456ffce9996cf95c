// SPDX-License-Identifier: Apache-2.0
// A window that tests click and type through as its user does.
#pragma once

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QToolBar>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "ConvertedModels.h"
#include "ScriptedPrompts.h"
#include "desk/view/MainWindow.h"
#include "desk/view/ResultList.h"
#include "desk/view/ResultModel.h"
#include "kyclash/SystemRoot.h"
#include "support/TemporaryFolder.h"

// A cold machine under a sanitizer converts the sample in less (ms).
inline constexpr int kPatience = 300000;

/// A user at the window, with a folder for files and answers to the window's questions.
class DeskFlow : public testing::Test {
  protected:
    using ResultColumn = desk::ResultColumn;

    DeskFlow() {
        std::vector<std::string> remarks;
        EXPECT_TRUE(kyclash::SetSystemRoot(kyclash::ShippedDataFolder() / "system-root", remarks));
        EXPECT_TRUE(remarks.empty()) << remarks.front();
        script_.saveFile = QString::fromStdString((scratch_.Path() / "results.xml").string());
        Restart();
    }

    void SetUp() override {
        const std::string reason = ifchost::testing::WhyNoConversion();
        if (!reason.empty()) GTEST_SKIP() << "models cannot be converted: " << reason;
    }

    // A new window, as after the program was closed.
    void Restart() {
        window_.reset();
        desk::SessionOptions options;
        options.loading.cacheDir = DESK_CACHE_DIR;
        window_ = std::make_unique<desk::MainWindow>(options, language_,
                                                     std::make_unique<ScriptedPrompts>(script_));
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

    void OpenSample() { Open({QStringLiteral(DESK_SAMPLE_IFC)}); }

    void Open(const QStringList& models) {
        script_.models = models;
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

    // Starts to type into a cell as a user does: F2, text.
    void StartTyping(int row, ResultColumn column, const QString& text,
                     QPointer<QLineEdit>& editor) {
        List().setCurrentIndex(List().model()->index(row, static_cast<int>(column)));
        List().setFocus();
        QTest::keyClick(&List(), Qt::Key_F2);
        editor = List().findChild<QLineEdit*>();
        ASSERT_FALSE(editor.isNull());
        editor->selectAll();
        QTest::keyClicks(editor, text);
    }

    // And ends it by return.
    void TypeInto(int row, ResultColumn column, const QString& text) {
        QPointer<QLineEdit> editor;
        ASSERT_NO_FATAL_FAILURE(StartTyping(row, column, text, editor));
        QTest::keyClick(editor, Qt::Key_Return);
        // The list takes the text over once the key press is done with.
        ASSERT_TRUE(QTest::qWaitFor([&] { return editor.isNull(); }, kPatience));
    }

    void TypeFilter(const char* field, const QString& text) {
        auto& edit = Get<QLineEdit>(field);
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, text);
        QTest::keyClick(&edit, Qt::Key_Return);
    }

    // Keeps a picture of the window; its name says on which display it was taken.
    void Keep(const QString& name) {
        QCoreApplication::processEvents();
        QDir().mkpath(DESK_SCREENSHOT_DIR);
        QString display = QGuiApplication::platformName();
        if (window_->devicePixelRatio() > 1.0)
            display += QStringLiteral("-%1x").arg(window_->devicePixelRatio());
        const QString file = QStringLiteral("%1/%2-%3.png").arg(DESK_SCREENSHOT_DIR, name, display);
        ASSERT_TRUE(window_->grab().save(file)) << file.toStdString();
    }

    QString language_ = "en";  // of the kinds' names
    kycbtest::TemporaryFolder scratch_;
    ScriptedPrompts::Script script_;
    std::unique_ptr<desk::MainWindow> window_;
};
