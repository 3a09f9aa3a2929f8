#pragma once
#include <stdexcept>
#include <string>

namespace veranox {

/// What is wrong in a JSON text and where: `place` is "line 3, column 14" or the path of the value
/// ("Profiles.work.Port"), `text` the end of a sentence about it ("must be a whole number").
class JsonProblem : public std::runtime_error {
public:
    JsonProblem(std::string place, std::string text)
        : std::runtime_error(place + ": " + text),
          place(std::move(place)),
          text(std::move(text))
    {
    }

    const std::string place;
    const std::string text;
};

/// The text is no JSON at all.
class JsonSyntaxProblem : public JsonProblem {
public:
    using JsonProblem::JsonProblem;
};

/// The member has the right type, but a value that is not allowed.
class JsonValueProblem : public JsonProblem {
public:
    using JsonProblem::JsonProblem;
};

/// The document is in order, but of a version that only a newer program can read. It must be left as it is.
class NewerConfigProblem : public JsonProblem {
public:
    using JsonProblem::JsonProblem;
};

} // namespace veranox
