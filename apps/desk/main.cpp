// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/HostServices.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QSurfaceFormat>
#include <QTranslator>

#include "desk/view/MainWindow.h"
#include "desk/view/Prompts.h"
#include "desk/view/SystemRoot.h"

namespace {

std::filesystem::path ToPath(const QString& text) {
    return std::filesystem::path(text.toStdU16String());
}

// Translations lie beside the program or in its share folder, named after the language; the
// toolkit brings its own.
void LoadTranslations(QApplication& application) {
    const QLocale locale;
    const QString programFolder = QCoreApplication::applicationDirPath();
    for (const QString& folder :
         {programFolder + "/translations", programFolder + "/../share/kyclash-desk/translations"}) {
        auto* translator = new QTranslator(&application);
        if (translator->load(locale, "kyclash-desk", "_", folder)) {
            QCoreApplication::installTranslator(translator);
            break;
        }
    }
    auto* toolkit = new QTranslator(&application);
    if (toolkit->load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(toolkit);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName("kyclash-desk");
    QCoreApplication::setApplicationVersion(KYCLASH_DESK_VERSION);
    LoadTranslations(application);

    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        QCoreApplication::translate("main", "Finds and manages clashes in building models."));
    arguments.addHelpOption();
    arguments.addVersionOption();
    const QCommandLineOption results(
        "results", QCoreApplication::translate("main", "Open saved results with their models."),
        "file");
    const QCommandLineOption cache(
        "cache-dir", QCoreApplication::translate("main", "Folder for converted models."), "folder");
    const QCommandLineOption mapping(
        "mapping", QCoreApplication::translate("main", "Mapping file for the kinds of elements."),
        "file");
    arguments.addOptions({results, cache, mapping});
    arguments.addPositionalArgument(
        "models", QCoreApplication::translate("main", "IFC models to open."), "[models...]");
    arguments.process(application);

    desk::UseSystemRoot();
    BASEUI::SetMessageBox([](const std::wstring& text, unsigned) {
        // It may come from the thread of a run; the window belongs to this one.
        QMetaObject::invokeMethod(qApp, [message = QString::fromStdWString(text)] {
            QMessageBox::warning(QApplication::activeWindow(), QString(), message);
        });
    });

    desk::LoadOptions options;
    if (arguments.isSet(cache)) options.cacheDir = ToPath(arguments.value(cache));
    if (arguments.isSet(mapping)) options.mapping = ToPath(arguments.value(mapping));
    desk::MainWindow window(options, QLocale().name().section('_', 0, 0),
                            std::make_unique<desk::Prompts>());
    window.show();
    if (arguments.isSet(results)) {
        window.OpenResults(ToPath(arguments.value(results)));
    } else {
        std::vector<std::filesystem::path> models;
        for (const QString& file : arguments.positionalArguments())
            models.push_back(ToPath(file));
        window.OpenModels(models);
    }
    return QApplication::exec();
}
