#include <app/ini/qluminicheck.h>

#include <app/api/qlumtext.h>
#include <app/ini/qluminitext.h>
#include <uabase/system/uadir.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumIniCheck)
};
} // namespace

QlumIniCheck qlumCheckIniFile(const QString& fileName, qint64 maximumSize)
{
    QlumIniCheck check;
    if (!QFileInfo::exists(fileName)) {
        check.readable = true;
        check.unchanged = true;
        return check;
    }
    std::vector<unsigned char> bytes;
    const std::error_code error =
        uaReadFile(toUaString(fileName), static_cast<std::uint64_t>(maximumSize), bytes);
    if (error) {
        check.error = error == std::errc::file_too_large
                          ? Text::tr("The file is larger than %1 MB.").arg(maximumSize / 1024 / 1024)
                          : QString::fromStdString(error.message());
        return check;
    }
    check.readable = true;
    QlumIniText text = qlumReadIni({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    check.content = qlumWriteIni(text.entries);
    check.refused = std::move(text.refused);
    check.unchanged = std::equal(bytes.begin(), bytes.end(), check.content.begin(), check.content.end(),
                                 [](unsigned char a, char b) { return a == static_cast<unsigned char>(b); });
    return check;
}
