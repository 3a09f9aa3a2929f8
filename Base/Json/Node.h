#pragma once
#include <QLatin1StringView>
#include <QString>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

// One JSON value, without saying which library parsed it. A node is two words that point into its Document and live no
// longer than it.
namespace json {

class Document;

class Node {
public:
    enum class Kind { nothing, null, boolean, number, text, list, object };

    // A value that is not there.
    Node() = default;

    Kind kind() const;
    bool isAbsent() const { return kind() == Kind::nothing || kind() == Kind::null; }

    // The value, for a node of the fitting kind only.
    bool boolean() const;
    QString text() const;
    std::optional<qint64> wholeNumber() const; // absent for a fraction and beyond 64 bits
    std::vector<Node> elements() const;
    std::vector<std::pair<QString, Node>> members() const;
    Node member(QLatin1StringView key) const; // the first of that key, exactly; nothing if there is none

    // The kind in words, for a message.
    QString description() const;

private:
    friend class Document;
    struct Access;

    const void *m_document = nullptr;
    std::size_t m_index = 0;
};

// A parsed JSON text. Nesting is bounded at 1024 and parsing does not recurse. Numbers have no bound: one that neither
// 64 bits nor a double holds stands for some number that is not whole.
class Document {
public:
    // Throws DecodingError for what is no JSON.
    explicit Document(const QByteArray &text);
    ~Document();

    Node root() const;

private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

} // namespace json
