// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

#include <string>
#include <type_traits>

namespace luma::test {

/// Adds the columns of a data-driven test, then a row for each call:
///     const test::Rows<QByteArray, bool> row("name", "isLeaf");
///     row("folder", "images", false);
/// Texts for a QString column may be given as UTF-8.
template <class... Columns>
class Rows final
{
public:
    template <class... Names>
    requires(sizeof...(Names) == sizeof...(Columns)) explicit Rows(Names... names)
    {
        (QTest::addColumn<Columns>(names), ...);
    }

    template <class... Values>
    requires(sizeof...(Values) == sizeof...(Columns)) void operator()(const char* row,
                                                                      const Values&... values) const
    {
        QTestData& data = QTest::newRow(row);
        ((data << column<Columns>(values)), ...);
    }

private:
    template <class Column, class Value>
    static Column column(const Value& value)
    {
        if constexpr (std::is_same_v<Column, QString> && std::is_convertible_v<Value, const char*>)
            return QString::fromUtf8(value);
        else if constexpr (std::is_same_v<Column, QByteArray> && std::is_same_v<Value, std::string>)
            return QByteArray::fromStdString(value);
        else
            return Column(value);
    }
};

} // namespace luma::test
