// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/formrules.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

constexpr qsizetype minPasswordLength = 8;

struct FormRules
{
    Q_DECLARE_TR_FUNCTIONS(FormRules)
};

} // namespace

QString validateName(const QString &name)
{
    return name.trimmed().isEmpty() ? FormRules::tr("Please enter your name.") : QString();
}

QString validateEmail(const QString &email)
{
    static const QRegularExpression address(QStringLiteral("^[^@\\s]+@[^@\\s]+$"));
    return address.match(email.trimmed()).hasMatch()
        ? QString()
        : FormRules::tr("Please enter a valid e-mail address.");
}

QString validateCode(const QString &code)
{
    return code.trimmed().isEmpty() ? FormRules::tr("Please enter the code you were sent.")
                                    : QString();
}

QString validateNewPassword(const QString &password)
{
    return password.size() < minPasswordLength
        ? FormRules::tr("The password must have at least %1 characters.").arg(minPasswordLength)
        : QString();
}

QString validatePassword(const QString &password)
{
    return password.isEmpty() ? FormRules::tr("Please enter the password.") : QString();
}
