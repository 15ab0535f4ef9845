#include <app/recovery/qlumcrashhandler.h>

#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <elf.h>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <string_view>
#include <unistd.h>

namespace {
constexpr std::array crashSignals{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int maximumFrames = 128;
constexpr std::size_t stackBytes = 256 * 1024;
constexpr std::size_t pathBytes = 4096;
constexpr std::size_t headBytes = 512;

// A line is written by one thread and read by none until the program crashes; a line that is being written
// then may be torn, which its reader can bear.
struct Line
{
    std::atomic<int> length{0};
    std::array<char, QlumCrashHandler::lineBytes> text{};
};

struct State
{
    std::array<char, pathBytes> path{};
    std::array<char, headBytes> head{};
    std::size_t headLength = 0;
    std::array<Line, QlumCrashHandler::keptLines> lines{};
    std::atomic<unsigned int> next{0};
    std::atomic<bool> handled{false};
    alignas(16) std::array<char, stackBytes> stack{}; // of the handler: the usual one may be what overflowed
};
State g_state;

// ---- in the handler: no allocation, no lock, no stream

void put(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void putNumber(int file, unsigned long value, unsigned int base)
{
    std::array<char, 24> digits{};
    std::size_t at = digits.size();
    do {
        digits.at(--at) = "0123456789abcdef"[value % base];
        value /= base;
    } while (value != 0);
    put(file, std::string_view(digits.data() + at, digits.size() - at));
}

void putLines(int file)
{
    put(file, "\nLast lines of the log:\n");
    const unsigned int next = g_state.next.load();
    for (unsigned int i = 0; i < g_state.lines.size(); ++i) {
        const Line& line = g_state.lines.at((next + i) % g_state.lines.size());
        const int length = std::clamp(line.length.load(), 0, QlumCrashHandler::lineBytes);
        if (length == 0)
            continue;
        put(file, "  ");
        put(file, std::string_view(line.text.data(), static_cast<std::size_t>(length)));
        put(file, "\n");
    }
}

void writeReport(int number, const siginfo_t* info)
{
    const int file = ::open(g_state.path.data(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file < 0)
        return;
    put(file, std::string_view(g_state.head.data(), g_state.headLength));
    put(file, "Seconds since 1970: ");
    putNumber(file, static_cast<unsigned long>(::time(nullptr)), 10);
    put(file, "\nSignal: ");
    putNumber(file, static_cast<unsigned long>(number), 10);
    put(file, ", address 0x");
    putNumber(file, reinterpret_cast<unsigned long>(info->si_addr), 16);
    put(file, "\n\nStack:\n");
    std::array<void*, maximumFrames> frames{};
    ::backtrace_symbols_fd(frames.data(), ::backtrace(frames.data(), maximumFrames), file);
    putLines(file);
    ::close(file);
}

void onSignal(int number, siginfo_t* info, void* /*context*/)
{
    if (!g_state.handled.exchange(true))
        writeReport(number, info);
    ::signal(number, SIG_DFL);
    ::raise(number); // as without a handler, once this one has returned
}

// ---- beforehand

QByteArray buildIdOf(const dl_phdr_info& module)
{
    for (const ElfW(Phdr)* header = module.dlpi_phdr; header != module.dlpi_phdr + module.dlpi_phnum;
         ++header) {
        if (header->p_type != PT_NOTE)
            continue;
        const auto* at = reinterpret_cast<const char*>(module.dlpi_addr + header->p_vaddr);
        const char* end = at + header->p_memsz;
        while (static_cast<std::size_t>(end - at) >= sizeof(ElfW(Nhdr))) {
            ElfW(Nhdr) note{};
            std::memcpy(&note, at, sizeof note);
            const auto padded = [](std::size_t size) { return (size + 3) & ~std::size_t{3}; };
            const std::size_t bytes = sizeof note + padded(note.n_namesz) + padded(note.n_descsz);
            if (bytes > static_cast<std::size_t>(end - at))
                break;
            if (note.n_type == NT_GNU_BUILD_ID)
                return QByteArray(at + sizeof note + padded(note.n_namesz), static_cast<int>(note.n_descsz))
                    .toHex();
            at += bytes;
        }
    }
    return {};
}

template <std::size_t size>
std::size_t copyTo(std::array<char, size>& target, const QByteArray& text)
{
    const std::size_t length = std::min(static_cast<std::size_t>(text.size()), size - 1);
    std::memcpy(target.data(), text.constData(), length);
    target.at(length) = '\0';
    return length;
}
} // namespace

QByteArray QlumCrashHandler::buildId()
{
    QByteArray id;
    // the program itself comes first
    ::dl_iterate_phdr(
        [](dl_phdr_info* module, std::size_t, void* result) {
            *static_cast<QByteArray*>(result) = buildIdOf(*module);
            return 1;
        },
        &id);
    return id.isEmpty() ? QByteArrayLiteral("none") : id;
}

void QlumCrashHandler::install(const QString& reportFile, const QByteArray& version)
{
    copyTo(g_state.path, QFile::encodeName(reportFile));
    g_state.headLength = copyTo(g_state.head, "Tavelin " + version + "\nBuild id: " + buildId() + "\n");
    std::array<void*, 1> frame{};
    ::backtrace(frame.data(), 1); // loads the library that it needs now, which would allocate in the handler
    stack_t stack{};
    stack.ss_sp = g_state.stack.data();
    stack.ss_size = g_state.stack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = onSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    ::sigemptyset(&action.sa_mask);
    for (const int number : crashSignals)
        ::sigaction(number, &action, nullptr);
}

void QlumCrashHandler::note(const QString& line)
{
    const QByteArray text = line.toUtf8();
    const int length = std::min(static_cast<int>(text.size()), lineBytes);
    Line& place = g_state.lines.at(g_state.next.fetch_add(1) % g_state.lines.size());
    place.length.store(0);
    std::memcpy(place.text.data(), text.constData(), static_cast<std::size_t>(length));
    place.length.store(length);
}
