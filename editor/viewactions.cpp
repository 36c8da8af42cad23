// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/viewactions.h"

#include "ui_HTMLDocument.h"
#include "web/viewcontroller.h"

#include <QApplication>

#include <algorithm>

namespace luma {

namespace {

constexpr double zoomStep = 1.1;

} // namespace

ViewActions::ViewActions(Ui::HTMLDocument& ui, ViewController& rendering, QObject* parent)
    : QObject(parent), m_rendering(rendering)
{
    connectClipboard(ui);
    connectView(ui);
}

void ViewActions::connectClipboard(Ui::HTMLDocument& ui)
{
    connect(ui.cutAction, &QAction::triggered, this, [this] { sendToFocus("cut", QWebEnginePage::Cut); });
    connect(ui.copyAction, &QAction::triggered, this, [this] { sendToFocus("copy", QWebEnginePage::Copy); });
    connect(ui.pasteAction, &QAction::triggered, this,
            [this] { sendToFocus("paste", QWebEnginePage::Paste); });
    connect(ui.selectAllAction, &QAction::triggered, this,
            [this] { sendToFocus("selectAll", QWebEnginePage::SelectAll); });
}

void ViewActions::connectView(Ui::HTMLDocument& ui)
{
    connect(ui.showSourceAction, &QAction::triggered, &m_rendering, &ViewController::showSource);
    connect(ui.scriptConsoleAction, &QAction::triggered, &m_rendering, &ViewController::showScriptConsole);
    connect(ui.inspectElementAction, &QAction::triggered, &m_rendering, &ViewController::inspectElement);
    connect(ui.zoomInAction, &QAction::triggered, this, [this] { zoom(m_magnification * zoomStep); });
    connect(ui.zoomOutAction, &QAction::triggered, this, [this] { zoom(m_magnification / zoomStep); });
    connect(ui.actualSizeAction, &QAction::triggered, this, [this] { zoom(1); });
}

void ViewActions::sendToFocus(const char* slot, int webAction)
{
    QWidget* const focus = QApplication::focusWidget();
    if (focus && focus->metaObject()->indexOfSlot(QByteArray(slot).append("()").constData()) >= 0)
        QMetaObject::invokeMethod(focus, slot);
    else
        m_rendering.webView()->page()->triggerAction(static_cast<QWebEnginePage::WebAction>(webAction));
}

void ViewActions::zoom(double factor)
{
    m_magnification = std::clamp(factor, 0.25, 5.0);
    m_rendering.setMagnification(m_magnification);
}

} // namespace luma
