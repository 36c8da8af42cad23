// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/ticktable.h"
#include "site/siterecord.h"
#include "site/syncrow.h"

namespace luma {

/// The publish table: the rows of a comparison with their check boxes. A new column is a value of Column, an
/// entry of the table in the .cpp file, and what it shows, a member of SyncRow. Main thread only.
class SyncTableModel final : public TickTable<SyncRow>
{
    Q_OBJECT

public:
    enum Column {
        KindColumn,
        NameColumn,
        SentSizeColumn,
        SentDateColumn,
        ReceivedSizeColumn,
        ReceivedDateColumn,
        ReasonColumn,
        ColumnCount
    };

    explicit SyncTableModel(QObject* parent = nullptr);

    /// Names the columns of both sides.
    void setDirection(Direction direction);

    /// The same for a table of kept versions.
    void setRestoring();

    static QString textOf(SyncKind kind);
};

} // namespace luma
