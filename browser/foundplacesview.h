// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeView>

namespace luma {

class FoundPlaces;

/// Shows FoundPlaces: the files open, what was found marked in its line. Space ticks the selected rows. Main thread only.
class FoundPlacesView final : public QTreeView
{
    Q_OBJECT

public:
    explicit FoundPlacesView(QWidget* parent = nullptr);

    /// Called once. `places` outlive the view.
    void setPlaces(FoundPlaces& places);

signals:
    /// The user double-clicked a row, or pressed Return on it.
    void rowActivated(const QModelIndex& row);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    FoundPlaces* m_places = nullptr;
};

} // namespace luma
