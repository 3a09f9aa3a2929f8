#pragma once
#include "Log/FileDescriptor.h"
#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <cstdint>

// A file of lines that never grows beyond a size: it is then moved aside as path.1, what was path.1 becomes path.2, and
// so on up to a number of backups. Only its owner can read it: the folder is kept at 0700, the file at 0600, also where
// the owner lacked a right.
//
// The file is opened for each call, so that others may move or delete it at any time. A symbolic link, a folder or
// anything else that is no plain file in its place is an error and is neither read nor written.
//
// Calls block on the disk and throw VeranoxRuntimeLogFileError. One thread at a time.
class RotatingLineFile {
public:
    // maxBytes below 1 counts as 1, backupCount below 0 as 0.
    RotatingLineFile(const QString &path, std::int64_t maxBytes, int backupCount);

    // Adds each line and a line feed, rotating before one that does not fit. A line that is larger than maxBytes gets a
    // file of its own. A line that cannot be written leaves the file as it was before, and the next is tried; throws
    // when it is the last one that was not written.
    void append(const QByteArrayList &lines);

    // The content of all files that exist, oldest first. Of a file that is far larger than any of ours, the end.
    QByteArrayList contents();

private:
    struct Place { // one of the files, seen from the opened folder
        QByteArray name;
        QString path; // for people
    };
    qsizetype appendTogether(const QByteArrayList &lines, qsizetype first, qsizetype most) const;
    FileDescriptor openFolder() const;
    FileDescriptor prepareFile(int folder) const;
    void rotate(int folder) const;
    QByteArray read(int folder, const Place &place) const;
    Place place(int index) const; // 0 is the active file

    QString m_path;
    std::int64_t m_maxBytes;
    int m_backupCount;
};
