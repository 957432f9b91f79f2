#include "views/IntegerEdit.h"

#include <QLineEdit>
#include <QValidator>

#include <algorithm>

namespace {

bool IsMinus(QChar c)
{
    return c == u'-' || c == QChar(0x2212) || c == QChar(0xFF0D); // as other scripts and input methods have it
}

bool IsDigit(QChar c)
{
    return c.category() == QChar::Number_DecimalDigit;
}

bool IsInteger(const QString& text)
{
    return std::all_of(text.begin() + (text.startsWith(u'-') ? 1 : 0), text.end(),
                       [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Looks at each new text of a field. What was inserted is what the text has beyond the one before it.
class CIntegerValidator final : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& input, int& cursor) const override
    {
        if (!IsInteger(input)) {
            const qsizetype begin = BeginOfChange(input, cursor);
            const QString taken = FirstInteger(input.mid(begin, cursor - begin));
            const QString text = input.left(begin) + taken + input.mid(cursor);
            if (taken.isEmpty() || !IsInteger(text))
                return Invalid; // the field goes back to the text before
            input = text;
            cursor = static_cast<int>(begin + taken.size());
        }
        m_last = input;
        return Acceptable; // nothing, and a minus alone, count as 0
    }

private:
    /// What stands after the cursor is older than what was inserted, and so is what stood before it and still does.
    qsizetype BeginOfChange(const QString& input, qsizetype cursor) const
    {
        const qsizetype most = std::min(cursor, m_last.size() - (input.size() - cursor));
        qsizetype begin = 0;
        while (begin < most && input[begin] == m_last[begin])
            ++begin;
        return begin;
    }

    mutable QString m_last;
};

} // namespace

void TakeIntegersOnly(QLineEdit& edit)
{
    edit.setValidator(new CIntegerValidator(&edit));
    edit.setText(edit.text()); // to be looked at, too
}

QString FirstInteger(const QString& text)
{
    const QString trimmed = text.trimmed();
    const auto first = std::find_if(trimmed.begin(), trimmed.end(), IsDigit);
    const auto last = std::find_if_not(first, trimmed.end(), IsDigit);
    QString number;
    if (!trimmed.isEmpty() && IsMinus(trimmed.front()) && first - trimmed.begin() <= 1)
        number = QStringLiteral("-");
    std::transform(first, last, std::back_inserter(number), [](QChar c) { return QChar(u'0' + c.digitValue()); });
    return number;
}
