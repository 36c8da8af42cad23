// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace luma {

/// The bar at the top of a page's window, which says what the user has to know; hidden until there is something. Main
/// thread.
class NoticeBar final : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent = nullptr);

    enum class Offer { Nothing, Reload };
    /// Shows the plain text until it is dismissed or the bar is hidden.
    void tell(const QString& text, Offer offer = Offer::Nothing);
    /// Shows a reason, which goes with forgetRefusal().
    void refuse(const QString& reason);
    void forgetRefusal();
    [[nodiscard]] bool offersReload() const;

signals:
    void reloadRequested();

private:
    QLabel* m_text;
    QPushButton* m_reloadButton;
    bool m_tellsRefusal = false;
};

} // namespace luma
