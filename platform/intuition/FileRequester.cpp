#include "platform/intuition/FileRequester.h"

#include "platform/dos/HostPaths.h"
#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "platform/intuition/HostFile.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/RequestDialog.h"

#include <QFile>
#include <QFileDialog>

#include <utility>

namespace intuition {

namespace {

FileRequestHandler Handler; // empty: the user is asked

// False when the user has chosen nothing, or the program is to end.
bool WaitForChoice(QFileDialog& dialog) {
    const int signal = exec::AllocSignal();
    if (signal < 0)
        return false;
    exec::Task* const owner = exec::FindTask();
    const exec::SignalMask mask = exec::SignalMask{1} << signal;
    QObject::connect(&dialog, &QDialog::finished, &dialog, [owner, mask] { exec::Signal(owner, mask); });
    dialog.show();
    const bool isBroken = (exec::Wait(mask | exec::BreakControlC) & exec::BreakControlC) != 0;
    if (isBroken)
        exec::Signal(owner, exec::BreakControlC); // for the loop, which ends the program
    dialog.disconnect();
    exec::FreeSignal(signal);
    return !isBroken && dialog.result() == QDialog::Accepted;
}

} // namespace

std::optional<std::string> RequestFile(Window* parent, const FileRequestSpec& spec) {
    if (Handler)
        return Handler(spec);
    if (!DisplayIsOpen())
        return std::nullopt;
    const BlockWhileAsking blocked(parent);
    QFileDialog dialog(blocked.ParentOfDialog(), TitleText(spec.Title), DialogStart(spec.Drawer));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setWindowModality(blocked.ParentOfDialog() == nullptr ? Qt::ApplicationModal : Qt::WindowModal);
    if (!WaitForChoice(dialog) || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dos::FromHostPath(QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString());
}

FileRequestHandler SetFileRequestHandler(FileRequestHandler handler) {
    return std::exchange(Handler, std::move(handler));
}

} // namespace intuition
