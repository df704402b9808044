// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTest>

#include <tuple>

/// The table of a data-driven test, by the types of its columns. Each call adds a row, and the test
/// takes its row under names:
///     const Rows<QString, int> add;
///     add("two passes", "in.avi", 2);
///     …
///     const auto [source, runs] = fetchRow<QString, int>();
template <typename... Columns> class Rows
{
public:
    Rows() { QTest::addColumn<std::tuple<Columns...>>("row"); }
    void operator()(const QString &name, const Columns &...values) const
    {
        QTest::newRow(name.toUtf8().constData()) << std::tuple<Columns...>(values...);
    }
};

/// The current row of a table of these columns.
template <typename... Columns> [[nodiscard]] std::tuple<Columns...> fetchRow()
{
    using Row = std::tuple<Columns...>;
    QFETCH(Row, row);
    return row;
}

/// A table whose rows are but their names, which the test takes with QFETCH(QString, name).
inline void addNames(const QStringList &names)
{
    QTest::addColumn<QString>("name");
    for (const QString &name : names)
        QTest::newRow(name.toUtf8().constData()) << name;
}
