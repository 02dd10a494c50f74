// What the tests of the window system share: a display without a screen, and windows around a gadget.
#pragma once

#include "platform/exec/Tasks.h"
#include "platform/intuition/Application.h"
#include "platform/intuition/ListBrowser.h"
#include "platform/intuition/Native.h"
#include "platform/intuition/Window.h"

#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QtWidgets/qtestsupport_widgets.h>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace intuition {

class OnDisplay : public testing::Test {
protected:
    OnDisplay() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("XDG_RUNTIME_DIR", Runtime.path().toUtf8());
        EXPECT_TRUE(OpenDisplay(0, nullptr));
    }
    ~OnDisplay() override { CloseDisplay(); }

    const QTemporaryDir Runtime; // the toolkit makes one otherwise and leaves it there

    static void Pump() {
        for (int round = 0; round < 3; ++round)
            exec::CheckSignal(0);
    }

    static std::vector<WindowEvent> EventsOf(Window& window) {
        Pump();
        std::vector<WindowEvent> events;
        while (auto event = window.NextEvent())
            events.push_back(*event);
        return events;
    }
    // The one event that has come.
    static WindowEvent EventOf(Window& window) {
        const std::vector<WindowEvent> events = EventsOf(window);
        EXPECT_EQ(events.size(), 1U);
        return events.empty() ? WindowEvent() : events.front();
    }
    // Has the pointer press at one place of a widget, move over others and let go at the last.
    static void Drag(QWidget& widget, QPoint from, const std::vector<QPoint>& places) {
        const auto send = [&widget](QEvent::Type type, QPointF place, Qt::MouseButton button,
                                    Qt::MouseButtons held) {
            QMouseEvent event(type, place, widget.mapToGlobal(place), button, held, Qt::NoModifier);
            QCoreApplication::sendEvent(&widget, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        for (const QPoint place : places)
            send(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, places.back(), Qt::LeftButton, Qt::NoButton);
    }
    static void TurnWheel(QWidget& widget, int eighths) {
        QWheelEvent event(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, eighths),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&widget, &event);
    }
};

// An open window around one gadget.
template <typename GadgetType>
struct Shown {
    explicit Shown(std::unique_ptr<GadgetType> gadget)
        : Content(*gadget), Frame({"Test", -1, -1, 600, 400}, std::move(gadget)) {
        EXPECT_TRUE(Frame.Open());
        Frame.Activate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Content.Native().Widget->window()));
        while (Frame.NextEvent()) {
        }
    }
    QWidget& Widget() { return *Content.Native().Widget; }

    GadgetType& Content;
    Window Frame;
};

// Rows that are made up when they are asked for.
class MadeUpRows : public ListSource {
public:
    explicit MadeUpRows(std::size_t rows) : Rows(rows) {}
    std::size_t RowCount() const override { return Rows; }
    CellLook Cell(std::size_t row, std::size_t column) const override {
        CellLook cell;
        Scratch = column == 0 ? "name " + std::to_string(row) : "size";
        cell.Text = Scratch;
        return cell;
    }
    RowLook Row(std::size_t row) const override {
        RowLook look;
        look.Disabled = row == DisabledRow;
        return look;
    }
    std::string_view Name(std::size_t row) const override { return Scratch = "name " + std::to_string(row); }

    std::size_t DisabledRow = NoRow;

private:
    std::size_t Rows;
    mutable std::string Scratch;
};

} // namespace intuition
