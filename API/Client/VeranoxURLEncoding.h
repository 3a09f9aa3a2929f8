#pragma once
#include <QString>

// A name as a part of a URL's path: everything but letters, digits and !$&'()*+,-./:=@_~ becomes %XX of its UTF-8. A
// slash stays, and so a name with one spans several segments.
QString percentEncodedForPath(const QString &name);

// A text as a value in a URL's query: everything but letters, digits and !$&'()*+,-./:;=?@_~ becomes %XX of its UTF-8.
// An ampersand stays, and so splits the query.
QString percentEncodedForQuery(const QString &text);
