#include "platform/intuition/AppIcon.h"

#include "platform/intuition/DroppedObjects.h"
#include "platform/intuition/Native.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QSystemTrayIcon>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace intuition {

namespace {

constexpr int PictureSide = 64, IconWidth = 112, Margin = 8; // layout units

QPixmap PictureOf(const AppIconSpec& spec) {
    const std::uint64_t size = std::uint64_t{spec.Width} * spec.Height;
    if (size == 0 || spec.Pixels.size() < size)
        return {};
    const auto* bytes = reinterpret_cast<const uchar*>(spec.Pixels.data());
    const QImage image(bytes, static_cast<int>(spec.Width), static_cast<int>(spec.Height),
                       static_cast<qsizetype>(spec.Width) * 4, QImage::Format_ARGB32);
    return QPixmap::fromImage(image.copy());
}

// The icon where no tray would take it: picture over label, moved by dragging, opened by a double click or
// the Return key, and fed by dropping.
class IconWindow : public QWidget {
public:
    explicit IconWindow(std::function<void(std::vector<std::string>)> act) : Menu(this), Act(std::move(act)) {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setFocusPolicy(Qt::StrongFocus);
        setAcceptDrops(true);
    }

    void Show(const AppIconSpec& spec) {
        Label = DisplayText(spec.Label);
        Picture = PictureOf(spec);
        setWindowTitle(TitleText(spec.Label));
        setWindowIcon(QIcon(Picture));
        setAccessibleName(Label);
        setFixedSize(IconWidth, PictureSide + fontMetrics().height() + 3 * Margin);
        const bool isPlaced = spec.Left != -1 || spec.Top != -1;
        if (!isVisible() && isPlaced && IsOnAScreen({QPoint(spec.Left, spec.Top), size()}))
            move(spec.Left, spec.Top);
        update();
        show();
    }

    QMenu Menu;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect frame = rect().adjusted(0, 0, -1, -1);
        painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
        painter.drawRect(frame);
        QPixmap picture = Picture;
        if (picture.width() > PictureSide || picture.height() > PictureSide)
            picture = picture.scaled(PictureSide, PictureSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QRect box(0, Margin, width(), PictureSide);
        painter.drawPixmap(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, picture.size(), box),
                           picture);
        painter.setPen(palette().color(QPalette::WindowText));
        const QRect line(Margin, box.bottom() + Margin, width() - 2 * Margin, fontMetrics().height());
        painter.drawText(line, Qt::AlignCenter,
                         fontMetrics().elidedText(Label, Qt::ElideMiddle, line.width()));
    }
    void mousePressEvent(QMouseEvent* event) override { PressedAt = event->pos(); }
    void mouseMoveEvent(QMouseEvent* event) override {
        constexpr int threshold = 4;
        if (event->buttons().testFlag(Qt::LeftButton) &&
            (event->pos() - PressedAt).manhattanLength() >= threshold)
            windowHandle()->startSystemMove();
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton)
            Act({});
    }
    void keyPressEvent(QKeyEvent* event) override {
        const int key = event->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
            Act({});
        else
            QWidget::keyPressEvent(event);
    }
    void contextMenuEvent(QContextMenuEvent* event) override { Menu.popup(event->globalPos()); }
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        Act({}); // the desktop's way to close an icon must not leave the program without any
    }
    void dragEnterEvent(QDragEnterEvent* event) override { TakeDrag(*event); }
    void dropEvent(QDropEvent* event) override {
        if (auto objects = DroppedObjects(*event); !objects.empty())
            Act(std::move(objects));
    }

private:
    std::function<void(std::vector<std::string>)> Act;
    QString Label;
    QPixmap Picture;
    QPoint PressedAt;
};

} // namespace

// The one place on the desktop and the icons that stand behind it, by rank.
class AppIcon::Place {
public:
    struct Entry {
        const AppIcon* Icon;
        AppIconSpec Spec;
        exec::MsgPort* Port;
    };

    void Add(Entry entry) {
        const auto after = std::find_if(Entries.begin(), Entries.end(), [&](const Entry& other) {
            return other.Spec.Rank > entry.Spec.Rank;
        });
        Entries.insert(after, std::move(entry));
        Refresh();
    }
    void Remove(const AppIcon* icon) {
        std::erase_if(Entries, [icon](const Entry& entry) { return entry.Icon == icon; });
        Refresh();
    }

    // Takes the place off the desktop for good.
    void Forget() {
        Tray.reset();
        Window.reset();
        TrayMenu.reset();
        IsOpen = false;
    }

private:
    void Refresh() {
        if (!IsOpen)
            return;
        const bool hasTray = !Entries.empty() && QSystemTrayIcon::isSystemTrayAvailable();
        Shown = std::find_if(Entries.begin(), Entries.end(),
                             [&](const Entry& entry) { return hasTray || !entry.Spec.NeedsTray; });
        const bool isShown = Shown != Entries.end();
        if (isShown && hasTray)
            ShowTrayItem(Shown->Spec);
        else
            Tray.reset();
        if (isShown && !hasTray)
            ShowWindow(Shown->Spec);
        else
            Window.reset();
    }
    void ShowTrayItem(const AppIconSpec& spec) {
        FillMenu(*TrayMenu, spec);
        if (!Tray) {
            Tray = std::make_unique<QSystemTrayIcon>();
            Tray->setContextMenu(TrayMenu.get());
            QObject::connect(Tray.get(), &QSystemTrayIcon::activated, Tray.get(),
                             [this](QSystemTrayIcon::ActivationReason reason) {
                                 if (reason != QSystemTrayIcon::Context)
                                     Post({}, false);
                             });
        }
        const QPixmap picture = PictureOf(spec);
        Tray->setIcon(picture.isNull() ? QApplication::style()->standardIcon(QStyle::SP_DirIcon) : picture);
        Tray->setToolTip(DisplayText(spec.Label));
        Tray->show();
    }
    void ShowWindow(const AppIconSpec& spec) {
        if (!Window) {
            Window = std::make_unique<IconWindow>(
                [this](std::vector<std::string> objects) { Post(std::move(objects), false); });
        }
        FillMenu(Window->Menu, spec);
        Window->Show(spec);
    }
    void FillMenu(QMenu& menu, const AppIconSpec& spec) {
        menu.clear();
        QAction* open = menu.addAction(DisplayTextWithoutMnemonic(spec.Label));
        QAction* quit = menu.addAction(MarkedText(spec.QuitText));
        menu.setDefaultAction(open);
        QObject::connect(open, &QAction::triggered, &menu, [this] { Post({}, false); });
        QObject::connect(quit, &QAction::triggered, &menu, [this] { Post({}, true); });
    }
    void Post(std::vector<std::string> objects, bool quits) {
        auto message = std::make_unique<AppMessage>();
        message->Quits = quits;
        message->Arguments = std::move(objects);
        exec::PutMsg(*Shown->Port, std::move(message));
    }

    std::vector<Entry> Entries;
    std::vector<Entry>::iterator Shown = Entries.end(); // whose label is seen; the end when nothing is
    bool IsOpen = true;
    std::unique_ptr<QMenu> TrayMenu = std::make_unique<QMenu>(); // outlives the tray's item
    std::unique_ptr<QSystemTrayIcon> Tray;
    std::unique_ptr<IconWindow> Window;
};

namespace {

std::weak_ptr<AppIcon::Place> TheirPlace; // there while there are icons

} // namespace

void ForgetAppIcons() {
    if (const auto place = TheirPlace.lock())
        place->Forget();
}

AppIcon::AppIcon(AppIconSpec spec, exec::MsgPort& port) : Behind(TheirPlace.lock()) {
    if (!Behind)
        TheirPlace = Behind = std::make_shared<Place>();
    Behind->Add({this, std::move(spec), &port});
}

AppIcon::~AppIcon() {
    Behind->Remove(this);
}

} // namespace intuition
