// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

namespace luma {

/// The value transformers of the pane's controls, found by name. An absent value is an invalid QVariant.
class Transformers final
{
public:
    using Function = QString (*)(const QVariant& value);

    /// "ConnectTransformer", "FilePathTransformer" or "SMBPathTransformer"; null for any other name.
    static Function named(QStringView className);

    /// The title of the button that connects or disconnects: "Disconnect" for a present value, else "Connect".
    static QString ConnectTransformer(const QVariant& value);
    /// "0" for the text "file://", "1" for anything else.
    static QString FilePathTransformer(const QVariant& value);
    /// "0" for the text "smb://", "1" for anything else.
    static QString SMBPathTransformer(const QVariant& value);
};

} // namespace luma
