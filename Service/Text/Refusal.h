#pragma once
#include <stdexcept>
#include <string>

namespace veranox {

/// Why a request is not carried out, as one finished sentence for whoever sent it. Whoever throws it has changed
/// nothing. The application looks for words in the sentence, so a new wording must keep them: docs/control-api.md.
class Refusal : public std::runtime_error {
public:
    /// What the sender has to mend: 400 the request itself, 404 a name that there is not, 409 what stands against it
    /// here, 503 what may go well later.
    enum class Kind : unsigned { badInput = 400, unknown = 404, conflict = 409, later = 503 };

    Refusal(Kind kind, const std::string &sentence) : std::runtime_error(sentence), kind(kind) { }

    const Kind kind;
};

} // namespace veranox
