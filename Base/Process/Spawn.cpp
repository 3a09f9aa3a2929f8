#include "Base/Process/Spawn.h"
#include "Base/Process/LaunchError.h"
#include "Base/Process/SpawnSupport.h"
#include <QFile>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <vector>

namespace {

class FileActions {
public:
    FileActions() { ::posix_spawn_file_actions_init(&m_actions); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;

    void duplicate(const Descriptor &from, int to)
    {
        ::posix_spawn_file_actions_adddup2(&m_actions, from.number(), to);
    }
    void openNothing(int as, int mode) { ::posix_spawn_file_actions_addopen(&m_actions, as, "/dev/null", mode, 0); }
    posix_spawn_file_actions_t &actions() { return m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

class Attributes {
public:
    Attributes() { ::posix_spawnattr_init(&m_attributes); }
    ~Attributes() { ::posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    // A signal that this program blocks or ignores would otherwise be one that cannot stop the child.
    void restoreSignals()
    {
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::sigdelset(&all, SIGKILL);
        ::sigdelset(&all, SIGSTOP);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        addFlags(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    void leadProcessGroup()
    {
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        addFlags(POSIX_SPAWN_SETPGROUP);
    }
    void addFlags(int flags)
    {
        m_flags |= flags;
        ::posix_spawnattr_setflags(&m_attributes, static_cast<short>(m_flags));
    }
    const posix_spawnattr_t &attributes() const { return m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
    int m_flags = 0;
};

// The array of pointers that the system wants; the texts stay with their owner.
std::vector<char *> pointers(QByteArrayList &texts)
{
    std::vector<char *> result;
    for (QByteArray &text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

QByteArrayList argumentTexts(const ChildProcess::Program &program)
{
    QByteArrayList texts{QFile::encodeName(program.executable)};
    for (const QString &argument : program.arguments)
        texts.append(argument.toLocal8Bit());
    return texts;
}

QByteArrayList environmentTexts(const ProcessEnvironment &environment)
{
    QByteArrayList texts;
    for (auto entry = environment.begin(); entry != environment.end(); ++entry)
        texts.append(entry.key() + '=' + entry.value());
    return texts;
}

} // namespace

pid_t spawn(const ChildProcess::Program &program, const Descriptor &output)
{
    FileActions files;
    files.duplicate(output, STDOUT_FILENO); // before anything is opened: `output` may itself be one of 0 to 2
    if (program.capture == ChildProcess::Capture::outputAndErrors)
        files.duplicate(output, STDERR_FILENO);
    else
        files.openNothing(STDERR_FILENO, O_WRONLY);
    files.openNothing(STDIN_FILENO, O_RDONLY);

    Attributes attributes;
    attributes.restoreSignals();
    attributes.leadProcessGroup();
    attributes.addFlags(closeEverythingElse(files.actions()));

    QByteArrayList arguments = argumentTexts(program);
    QByteArrayList environment = environmentTexts(program.environment);
    pid_t child = 0;
    const int failure = ::posix_spawn(&child, arguments.first().constData(), &files.actions(), &attributes.attributes(),
        pointers(arguments).data(), pointers(environment).data());
    if (failure != 0)
        throw LaunchError(program.executable, failure);
    return child;
}
