#pragma once

#include <QListView>

namespace luma {

/// The rows of one browser column. Tells when a drag starts, and says in the empty space why there are no
/// rows.
class BrowserListView final : public QListView
{
    Q_OBJECT

public:
    explicit BrowserListView(QWidget* parent = nullptr);

    /// Shown in grey while there are no rows.
    void setEmptyText(const QString& text);

signals:
    void dragStarted();

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_emptyText;
};

} // namespace luma
