#include "platform/intuition/HostFile.h"

#include "platform/dos/HostPaths.h"
#include "platform/dos/Volumes.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <vector>

namespace intuition {

namespace {

bool MayHang(const std::string& hostPath) {
    const std::vector<dos::VolumeInfo> volumes = dos::Volumes();
    return std::any_of(volumes.begin(), volumes.end(), [&hostPath](const dos::VolumeInfo& volume) {
        const std::string& root = volume.HostRoot;
        return volume.MayHang && !root.empty() && hostPath.starts_with(root) &&
               (hostPath.size() == root.size() || root.back() == '/' || hostPath[root.size()] == '/');
    });
}

} // namespace

std::optional<std::string> HostFile(std::string_view path) {
    return path.starts_with('/') ? std::string(path) : dos::HostPath(path);
}

QString DialogStart(std::string_view drawer) {
    const auto start = HostFile(drawer);
    if (!start || MayHang(*start))
        return QDir::homePath();
    const QByteArray bytes = QByteArray::fromStdString(*start);
    const QString shown = QFile::decodeName(bytes);
    return QFile::encodeName(shown) == bytes ? shown : QDir::homePath();
}

} // namespace intuition
