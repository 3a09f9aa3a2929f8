#include "Base/Models/KeyedListModel.h"
#include "Tests/Support/QtPrinters.h"
#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

struct Row {
    QString name;
    int value = 0;
    const QString &id() const { return name; }
    bool operator==(const Row &) const = default;
};

using Model = KeyedListModel<Row>;

QList<Row> rowsOf(const Model &model)
{
    QList<Row> rows;
    for (int place = 0; place < model.rowCount(); ++place)
        rows.append(model.index(place).data(Model::rowRole).value<Row>());
    return rows;
}

class KeyedList : public ::testing::Test {
protected:
    Model model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy inserted{&model, &Model::rowsInserted};
    QSignalSpy removed{&model, &Model::rowsRemoved};
    QSignalSpy moved{&model, &Model::rowsMoved};
    QSignalSpy updated{&model, &Model::dataChanged};
    QSignalSpy reset{&model, &Model::modelReset};
};

} // namespace

Q_DECLARE_METATYPE(Row)

TEST_F(KeyedList, touchesNoRowThatDidNotChange)
{
    const QList<Row> rows{{u"a"_s, 1}, {u"b"_s, 2}, {u"c"_s, 3}};
    model.reconcile(rows);
    EXPECT_EQ(inserted.size(), 3);
    model.reconcile(rows);
    model.reconcile({{u"a"_s, 1}, {u"b"_s, 9}, {u"c"_s, 3}});
    EXPECT_EQ(inserted.size(), 3);
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(removed.size() + moved.size() + reset.size(), 0);
}

TEST_F(KeyedList, movesARowThatOnlyChangesItsPlace)
{
    model.reconcile({{u"a"_s, 1}, {u"b"_s, 2}, {u"c"_s, 3}});
    const QPersistentModelIndex c = model.index(2);
    model.reconcile({{u"c"_s, 3}, {u"a"_s, 1}, {u"b"_s, 2}});
    EXPECT_EQ(c.row(), 0);
    EXPECT_EQ(moved.size(), 1);
    EXPECT_EQ(inserted.size(), 3);
    EXPECT_EQ(removed.size(), 0);
}

TEST_F(KeyedList, tellsRowsOfOneNameApartByTheirOrder)
{
    model.reconcile({{u"a"_s, 1}, {u"a"_s, 2}});
    EXPECT_EQ(rowsOf(model), (QList<Row>{{u"a"_s, 1}, {u"a"_s, 2}}));
    model.reconcile({{u"a"_s, 1}});
    EXPECT_EQ(rowsOf(model), (QList<Row>{{u"a"_s, 1}}));
}

TEST_F(KeyedList, becomesAnyListFromAnyOtherAndKeepsWhatStays)
{
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same lists at each run
    const auto upTo = [&random](int most) { return std::uniform_int_distribution(0, most)(random); };
    for (int round = 0; round < 2000; ++round) {
        QList<Row> fresh;
        for (int count = upTo(8); count > 0; --count)
            fresh.append({QString(QChar(u'a' + upTo(9))), upTo(2)});
        QHash<QString, QPersistentModelIndex> firstOfName;
        for (int place = model.rowCount() - 1; place >= 0; --place)
            firstOfName[rowsOf(model).at(place).name] = model.index(place);
        model.reconcile(fresh);
        ASSERT_EQ(rowsOf(model), fresh);
        QStringList names;
        for (const Row &row : fresh)
            names.append(row.name);
        for (auto kept = firstOfName.cbegin(); kept != firstOfName.cend(); ++kept)
            ASSERT_EQ(kept->row(), names.indexOf(kept.key())); // -1: gone
    }
    EXPECT_EQ(reset.size(), 0);
}

TEST_F(KeyedList, answersNothingForWhatItDoesNotHave)
{
    model.reconcile({{u"a"_s, 1}});
    EXPECT_FALSE(model.index(0).data(Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.data({}, Model::rowRole).isValid());
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
    EXPECT_EQ(model.roleNames().value(Model::rowRole), "row");
}
