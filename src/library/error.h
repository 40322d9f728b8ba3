#pragma once

#include <QString>
#include <exception>

// Base of every failure Quennet throws: each one carries the sentence the user sees.
class Error : public std::exception {
public:
    [[nodiscard]] virtual QString description() const = 0;

    // For logs and crash output only; the UI shows description().
    [[nodiscard]] const char *what() const noexcept override;

private:
    mutable QByteArray m_what;
};

// A reply or file that does not have the expected shape.
class DecodingError : public Error {
public:
    explicit DecodingError(QString description);

    [[nodiscard]] QString description() const override { return m_description; }

private:
    QString m_description;
};

// The sentence for any failure: ours say it themselves, anything else by its what().
[[nodiscard]] QString describe(const std::exception &error);
