// Wiring: begins the decode of the command line's file, brings the toolkit up, prepares the data directories
// and loads the main window.

#include "app/CommandLine.h"
#include "app/mFile.h"
#include "app/mMain.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "app/Settings.h"
#include "commands/CommandHelp.h"
#include "engine/ImageLoader.h"
#include "engine/Limits.h"
#include "engine/Toolkit.h"
#include "platform/Dialogs.h"
#include "platform/FontsAhead.h"
#include "platform/InstanceGuard.h"
#include "platform/SpokenWidget.h"
#include "platform/TerminationSignals.h"
#include "system/Companions.h"
#include "system/mAssociation.h"
#include "viewer/frmImageView.h"
#include "viewer/LoadStep.h"

#include <QApplication>
#include <QDir>
#include <QScopeGuard>
#include <QSessionManager>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

using namespace quorvia;

namespace {

QStringList argumentsOf(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// Answers --help and --version. True when it did: the process ends then.
bool answeredOnOutput(const QStringList& arguments)
{
    if (arguments.contains(QStringLiteral("--version"))) {
        std::printf("%s %s\n", qPrintable(app::productTitle()),
                    qPrintable(app::versionText(app::productVersion(), QStringLiteral("."))));
        return true;
    }
    if (arguments.contains(QStringLiteral("--help"))) {
        const QByteArray text = commands::helpText();
        std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
        return true;
    }
    return false;
}

/// Begins to load the bare file of the line while the toolkit comes up; the load waits to be asked for by the
/// window.
std::shared_ptr<engine::ImageLoad> beginEarly(engine::ImageLoader& loader, const QString& file)
{
    if (!app::FileExists(file))
        return {};
    // The window's size at the last close: the first picture is decoded as large as it can be shown.
    constexpr QSize usualViewport(1680, 1050);
    QSize box;
    if (app::read(app::setting::cView) != 1)
        box = {app::read(app::setting::ViewportWidth, usualViewport.width()),
               app::read(app::setting::ViewportHeight, usualViewport.height())};
    return loader.load(file, 1, box);
}

/// Puts the user's bounds on memory in force.
void boundMemory(engine::ImageLoader& loader)
{
    constexpr qint64 mebibyte = 1024 * 1024;
    engine::Limits::setMachineBytes(app::read(app::setting::PictureMemory) * mebibyte);
    loader.setReadAheadCap(app::read(app::setting::ReadAheadMemory) * mebibyte);
}

/// Giving the types back shows nothing and is asked for by package tools too, which have no display.
bool goesWithoutDisplay(const app::CommandLine& line)
{
    const std::array variables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return line.isUninstall() && std::all_of(variables.begin(), variables.end(), qEnvironmentVariableIsEmpty);
}

/// Where nobody could answer a box.
platform::BoxAnswer tellOnOutput(const platform::MessageBox& box)
{
    std::fprintf(stderr, "%s\n", qPrintable(box.text));
    return platform::BoxAnswer::Ok;
}

} // namespace

int main(int argc, char* argv[])
{
    const QStringList arguments = argumentsOf(argc, argv);
    if (answeredOnOutput(arguments))
        return 0;
    // Beyond the user's limit on file sizes a write fails, the log's too; that is not the program's end.
    std::signal(SIGXFSZ, SIG_IGN);
    const app::CommandLine line = app::parseCommandLine(arguments, QDir::currentPath());
    const bool seen = !goesWithoutDisplay(line);
    std::optional<platform::MessageBoxAnswerer> unseen;
    std::optional<platform::FontsAhead> fonts;
    if (seen) {
        fonts.emplace();
    } else {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        unseen.emplace(tellOnOutput);
    }
    app::openSettings();
    auto loader = std::make_shared<engine::ImageLoader>();
    boundMemory(*loader);
    std::optional<engine::ToolkitHold> untilToolkitStands(std::in_place);
    auto early = beginEarly(*loader, line.bareFile);

    QCoreApplication::setApplicationName(QStringLiteral("quorvia"));
    QGuiApplication::setDesktopFileName(QStringLiteral("quorvia"));
    int toolkitArguments = 1; // the toolkit must not take words of our line for its own
    QApplication application(toolkitArguments, argv);
    platform::announceWindows(); // behind what the toolkit knows, and before the first window
    untilToolkitStands.reset();
    fonts.reset(); // the first text needs them
    // No decoder may draw any more when the toolkit goes. The window, which shares the loader, is gone by
    // then.
    const auto endLoads = qScopeGuard([&] {
        early.reset();
        loader.reset();
    });
    QGuiApplication::setQuitOnLastWindowClosed(false); // a hidden main window is no reason to end

    if (!app::probeMachineStore())
        return EXIT_FAILURE;
    if (line.isUninstall()) {
        system::RestoreAssociations();
        system::withdrawCompanions(app::companionDirectories());
        return app::removeSettings(app::InstallPath()) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    app::prepareDataDirectories(app::InstallPath());
    app::repairDataDirectories(app::InstallPath());

    const platform::InstanceGuard instances(platform::instanceLockPath());
    viewer::frmImageView window(loader, line);
    platform::TerminationSignals signalWatch;
    QObject::connect(&signalWatch, &platform::TerminationSignals::terminationAsked, &window,
                     &viewer::frmImageView::closeAll);
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &window,
                     &viewer::frmImageView::closeAll, Qt::DirectConnection);
    const bool goesOn = viewer::runLoadStep(window, instances.othersWereRunning());
    early.reset();
    const int result = goesOn ? application.exec() : 0;
    app::closeSettings();
    return result;
}
