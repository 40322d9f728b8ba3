#pragma once

#include <QString>

// The parts of the changelog (CHANGELOG.md, Keep a Changelog) a user has yet to see.
namespace ReleaseNotes {
// The version sections newer than seen up to running, newest first, as Markdown. "[Unreleased]"
// is the running version itself in a development build, and is left out of a release.
[[nodiscard]] QString since(const QString &changelog, const QString &seen, const QString &running,
                            bool development);
// Every version section, without the changelog's title and preamble.
[[nodiscard]] QString all(const QString &changelog);
} // namespace ReleaseNotes
