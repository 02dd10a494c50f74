#include "platform/intuition/HostFile.h"

#include "platform/dos/HostPaths.h"
#include "platform/dos/MountInfo.h"

#include <QDir>
#include <QFile>

namespace intuition {

std::optional<std::string> HostFile(std::string_view path) {
    return path.starts_with('/') ? std::string(path) : dos::HostPath(path);
}

QString DialogStart(std::string_view drawer) {
    const auto start = HostFile(drawer);
    if (!start || !dos::SlowMountOf(*dos::Mounts(), *start).empty())
        return QDir::homePath();
    const QByteArray bytes = QByteArray::fromStdString(*start);
    const QString shown = QFile::decodeName(bytes);
    return QFile::encodeName(shown) == bytes ? shown : QDir::homePath();
}

} // namespace intuition
