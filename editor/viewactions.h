// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace Ui {
class HTMLDocument;
}

namespace luma {

class ViewController;

/// The menu commands of a page's window that go to whatever has the keyboard (cut, copy, paste, select all),
/// and those that change how the rendering is looked at. Main thread.
class ViewActions final : public QObject
{
    Q_OBJECT

public:
    ViewActions(Ui::HTMLDocument& ui, ViewController& rendering, QObject* parent);

private:
    void connectClipboard(Ui::HTMLDocument& ui);
    void connectView(Ui::HTMLDocument& ui);
    /// Calls the slot of the field that has the keyboard, else the page's own command.
    void sendToFocus(const char* slot, int webAction);
    void zoom(double factor);

    ViewController& m_rendering;
    double m_magnification = 1;
};

} // namespace luma
