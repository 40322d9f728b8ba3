#include "download_thread.h"
#include "error.h"
#include "file_fetcher.h"

#include <QCoreApplication>

// Downloads one file with the file fetcher and exits with 0 once it is in place. The
// whole-process test kills it part-way and starts it again.
//   download_one SOURCE CA DESTINATION PARTIAL SIZE SHA256

namespace {
QCoro::Task<int> download(FileFetcher fetcher, QUrl source, FileFetcher::Target target)
{
    try {
        co_await fetcher.fetch(std::move(source), std::move(target));
        co_return 0;
    } catch (const Error &error) {
        qWarning("Download failed: %s", qUtf8Printable(error.description()));
        co_return 1;
    }
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 7)
        return 2;
    DownloadThread thread(arguments[2], QUrl(arguments[1]));
    const FileFetcher::Target target { .destination = arguments[3],
                                       .partial = arguments[4],
                                       .size = arguments[5].toLongLong(),
                                       .sha256 = arguments[6] };
    download(FileFetcher(&thread), QUrl(arguments[1]), target).then([](int status) {
        QCoreApplication::exit(status);
    });
    return app.exec();
}
