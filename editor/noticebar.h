// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace Ui {
class HTMLDocument;
}

namespace luma {

/// The bar at the top of a page's window that tells what went wrong, until it is dismissed or mended. Main
/// thread.
class NoticeBar final : public QObject
{
    Q_OBJECT

public:
    NoticeBar(Ui::HTMLDocument& ui, QObject* parent);

    /// The second one has a button to read the page again.
    void tell(const QString& text);
    void tellAndOfferReload(const QString& text);
    void hide();

signals:
    void reloadRequested();

private:
    Ui::HTMLDocument& m_ui;
};

} // namespace luma
