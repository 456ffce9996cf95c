// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/HostServices.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QMessageBox>
#include <QSet>
#include <QSettings>

#include "desk/view/MainWindow.h"
#include "desk/view/PathText.h"
#include "desk/view/Prompts.h"
#include "desk/view/Translations.h"
#include "kyclash/SystemRoot.h"

namespace {

class CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

// What the library wants to say, once however often it says it. It may come from the thread of a
// run; the windows belong to this one.
void ShowLibraryMessages() {
    BASEUI::SetMessageBox([](const std::wstring& text, unsigned) {
        QMetaObject::invokeMethod(qApp, [message = QString::fromStdWString(text)] {
            static QSet<QString> shown;
            if (shown.contains(message)) return;
            shown.insert(message);
            QMessageBox::warning(QApplication::activeWindow(), QString(), message);
        });
    });
}

// Whether the library got its categories and priorities; the user sees what is wrong with them.
bool HasSystemRoot(const std::optional<std::filesystem::path>& folder) {
    std::vector<std::string> remarks;
    const bool isUsable = kyclash::SetSystemRoot(folder, remarks);
    for (const std::string& remark : remarks)
        QMessageBox::warning(nullptr, QString(), QString::fromStdString(remark));
    return isUsable;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName("kyclash");
    QCoreApplication::setApplicationName("kyclash-desk");
    QCoreApplication::setApplicationVersion(KYCLASH_VERSION);
    const desk::Translations translations(QLocale(), QCoreApplication::applicationDirPath());

    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        CommandLine::tr("Finds and manages clashes in building models."));
    arguments.addHelpOption();
    arguments.addVersionOption();
    const QCommandLineOption results(
        "results", CommandLine::tr("Open saved results with their models."), "file");
    const QCommandLineOption rules(
        "rules", CommandLine::tr("Rule file; \"built-in\" for the rules that need no file."),
        "file");
    const QCommandLineOption systemRoot(
        "system-root", CommandLine::tr("Folder of the category tree and the priorities."),
        "folder");
    const QCommandLineOption mapping(
        "mapping", CommandLine::tr("Mapping file for the kinds of elements."), "file");
    const QCommandLineOption cache("cache-dir", CommandLine::tr("Folder for converted models."),
                                   "folder");
    arguments.addOptions({results, rules, systemRoot, mapping, cache});
    arguments.addPositionalArgument("models", CommandLine::tr("IFC models to open."),
                                    "[models...]");
    arguments.process(application);
    const auto fileOf = [&](const QCommandLineOption& option) {
        return arguments.isSet(option) ? std::optional(desk::ToPath(arguments.value(option)))
                                       : std::nullopt;
    };

    ShowLibraryMessages();
    if (!HasSystemRoot(fileOf(systemRoot))) return 1;
    desk::SessionOptions options;
    options.loading.mapping = fileOf(mapping);
    options.loading.cacheDir = fileOf(cache).value_or(std::filesystem::path());
    options.rules = fileOf(rules);
    // The names of kinds follow the window's own texts, which are English without a translation.
    const QString language =
        translations.HasWindowTexts() ? QLocale().name().section('_', 0, 0) : QStringLiteral("en");
    desk::MainWindow window(options, language, std::make_unique<desk::Prompts>());
    QSettings settings;
    window.RestoreLayout(settings);
    window.show();
    if (const auto file = fileOf(results)) {
        window.OpenResults(*file);
    } else {
        std::vector<std::filesystem::path> models;
        for (const QString& model : arguments.positionalArguments())
            models.push_back(desk::ToPath(model));
        window.OpenModels(models);
    }
    const int outcome = QApplication::exec();
    window.KeepLayout(settings);
    return outcome;
}
