#pragma once

#include "error.h"

#include <QCoroTask>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

class CancelToken;
class DownloadThread;

// Downloads one wallpaper file into its place on disk, resuming an interrupted download where the
// server allows it, and refuses a file whose size or SHA-256 differs from the library's. It keeps
// nothing between calls: what a later attempt needs lives in the partial file and the validator
// beside it. The work runs on the download thread; only progress and the end reach the main
// thread. Whether to try again is the caller's business.
class FileFetcher {
public:
    class Failure : public Error {
    public:
        enum class Kind { Status, LinkRejected, Mismatch };

        [[nodiscard]] static Failure status(int code) { return Failure(Kind::Status, code); }
        [[nodiscard]] static Failure linkRejected() { return Failure(Kind::LinkRejected); }
        [[nodiscard]] static Failure mismatch() { return Failure(Kind::Mismatch); }

        [[nodiscard]] Kind kind() const { return m_kind; }
        [[nodiscard]] int code() const { return m_code; }
        [[nodiscard]] QString description() const override;

        bool operator==(const Failure &other) const
        {
            return m_kind == other.m_kind && m_code == other.m_code;
        }

    private:
        explicit Failure(Kind kind, int code = 0)
            : m_kind(kind)
            , m_code(code)
        {
        }

        Kind m_kind;
        int m_code;
    };

    // Where one file goes and what it must be.
    struct Target {
        QString destination;
        QString partial; // the validator lies beside it, with ".etag" added
        qint64 size = 0;
        std::optional<QString> sha256; // hexadecimal in either case; none skips the digest
    };

    using Progress = std::function<void(double fraction)>;

    explicit FileFetcher(DownloadThread *thread);

    // One attempt. On return the destination holds the verified file. Progress (0 to 1) comes on
    // the main thread. Throws Failure, NetworkError as Qt reports it, or FileError; a cancelled
    // token ends the transfer with OperationCanceledError and keeps the partial file.
    [[nodiscard]] QCoro::Task<> fetch(QUrl source, Target target, Progress progress = {},
                                      std::shared_ptr<CancelToken> cancel = {}) const;

    // Copies a file that is already on disk to the partial path and finishes it there, on the
    // download thread: a failed check never deletes the original.
    [[nodiscard]] QCoro::Task<> copy(QString source, Target target) const;

    // Verifies the partial file by size and digest and moves it to the destination, replacing a
    // file there; on a mismatch deletes the partial and validator files. Reads the whole file
    // unless given the digest of its bytes: call it on the download thread.
    static void finish(const Target &target, std::optional<QString> digest = std::nullopt);

    // A redirect is followed only to the original request's scheme and host.
    [[nodiscard]] static bool allowsRedirect(const QUrl &original, const QUrl &target);

private:
    QPointer<DownloadThread> m_thread;
};
