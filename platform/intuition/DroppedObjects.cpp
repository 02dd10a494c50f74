#include "platform/intuition/DroppedObjects.h"

#include "platform/dos/HostPaths.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace intuition {

void TakeDrag(QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    if (std::none_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); }))
        return;
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

std::vector<std::string> DroppedObjects(QDropEvent& event) {
    std::vector<std::string> objects;
    const QList<QUrl> urls = event.mimeData()->urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) // handed on in its escaped form, so that bytes that are no UTF-8 survive
            objects.push_back(dos::FromHostPath(url.toEncoded().toStdString()));
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    return objects;
}

} // namespace intuition
