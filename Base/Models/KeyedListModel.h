#pragma once
#include <QAbstractListModel>
#include <QHash>
#include <QSet>
#include <utility>

// Rows of a view that outlive a new list: a row is known by its id(), and a new list inserts, removes, moves and
// updates rows in place. A row that did not change is not touched, so that focus, scroll position and animations stay
// where they are. Rows with one id are told apart by their order. Row: comparable, default-constructible, known to
// QMetaType. Main thread only.
template <class Row> class KeyedListModel : public QAbstractListModel {
public:
    enum Role { rowRole = Qt::UserRole }; // the Row itself, "row" in QML

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != rowRole)
            return {};
        return QVariant::fromValue(m_rows.at(index.row()).row);
    }

    QHash<int, QByteArray> roleNames() const override { return {{rowRole, QByteArrayLiteral("row")}}; }

    // Makes the rows those of `fresh`.
    void reconcile(const QList<Row> &fresh)
    {
        const QList<Entry> target = identified(fresh);
        removeAllBut(target);
        for (int place = 0; place < int(target.size()); ++place) {
            bringToPlace(target.at(place), place);
            update(place, target.at(place).row);
        }
    }

private:
    using Identity = std::pair<QString, int>; // id, and how many rows before have the same
    struct Entry {
        Identity identity;
        Row row;
    };

    static QList<Entry> identified(const QList<Row> &rows)
    {
        QList<Entry> entries;
        QHash<QString, int> seen; // NOLINT(misc-const-correctness): operator[] counts up
        for (const Row &row : rows)
            entries.append({{row.id(), seen[row.id()]++}, row});
        return entries;
    }

    void removeAllBut(const QList<Entry> &target)
    {
        QSet<Identity> kept;
        for (const Entry &entry : target)
            kept.insert(entry.identity);
        for (int place = int(m_rows.size()) - 1; place >= 0; --place) {
            if (kept.contains(m_rows.at(place).identity))
                continue;
            beginRemoveRows({}, place, place);
            m_rows.removeAt(place);
            endRemoveRows();
        }
    }

    void bringToPlace(const Entry &entry, int place)
    {
        for (int current = place; current < int(m_rows.size()); ++current) {
            if (m_rows.at(current).identity != entry.identity)
                continue;
            if (current != place) {
                beginMoveRows({}, current, current, {}, place);
                m_rows.move(current, place);
                endMoveRows();
            }
            return;
        }
        beginInsertRows({}, place, place);
        m_rows.insert(place, entry);
        endInsertRows();
    }

    void update(int place, const Row &row)
    {
        if (m_rows.at(place).row == row)
            return;
        m_rows[place].row = row;
        Q_EMIT dataChanged(index(place), index(place), {rowRole});
    }

    QList<Entry> m_rows;
};
