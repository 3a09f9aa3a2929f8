// Texts put together at random from pieces that matter to the code under test. The same seed gives the same texts.
#pragma once
#include <QString>
#include <QStringList>
#include <random>

class RandomText {
public:
    explicit RandomText(unsigned seed) : m_engine(seed) { }

    int below(int bound) { return std::uniform_int_distribution(0, bound - 1)(m_engine); }
    const QString &oneOf(const QStringList &pieces) { return pieces[below(static_cast<int>(pieces.size()))]; }

    // Up to `longest` pieces in a row.
    QString of(const QStringList &pieces, int longest)
    {
        QString text;
        for (int left = below(longest + 1); left > 0; --left)
            text += oneOf(pieces);
        return text;
    }

private:
    std::mt19937 m_engine;
};
