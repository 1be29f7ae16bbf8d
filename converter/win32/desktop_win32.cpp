#include "converter/desktop.h"

#include "assistant/mail_link.h"
#include "converter/file_ops.h"
#include "converter/win32/wide_text.h"
#include "platform/platform.h"

#include <windows.h>

#include <mapi.h>

namespace pl::converter {

namespace {

enum class MapiResult { Handled, NoClient };

// A new message in the user's mail program with the files attached, through Simple MAPI (which
// takes ANSI texts). The call returns once the person has sent or discarded the message.
// The mail program the user (or else the machine) chose as the default. Without one, Windows' own
// mapi32.dll would only say that there is none.
bool mailProgramRegistered() {
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        wchar_t name[256] = {};
        DWORD size = sizeof name;
        if (RegGetValueW(root, L"Software\\Clients\\Mail", nullptr, RRF_RT_REG_SZ, nullptr, name, &size) ==
                ERROR_SUCCESS &&
            name[0] != L'\0')
            return true;
    }
    return false;
}

MapiResult sendWithMapi(const std::vector<std::string>& files) {
    if (!mailProgramRegistered())
        return MapiResult::NoClient;
    HMODULE mapi = LoadLibraryW(L"mapi32.dll");
    if (!mapi)
        return MapiResult::NoClient;
    auto* sendMail = reinterpret_cast<LPMAPISENDMAIL>(reinterpret_cast<void*>(GetProcAddress(mapi, "MAPISendMail")));
    if (!sendMail) {
        FreeLibrary(mapi);
        return MapiResult::NoClient;
    }
    std::vector<std::string> paths, names;
    for (const auto& file : files) {
        paths.push_back(win32::ansi(file));
        names.push_back(win32::ansi(fileNameOf(file)));
    }
    std::vector<MapiFileDesc> attachments(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        attachments[i].nPosition = static_cast<ULONG>(-1);
        attachments[i].lpszPathName = paths[i].data();
        attachments[i].lpszFileName = names[i].data();
    }
    std::string subject = names.empty() ? std::string() : names.front();
    MapiMessage message{};
    message.lpszSubject = subject.data();
    message.nFileCount = static_cast<ULONG>(attachments.size());
    message.lpFiles = attachments.data();
    const ULONG result = sendMail(0, 0, &message, MAPI_DIALOG | MAPI_LOGON_UI, 0);
    FreeLibrary(mapi);
    return result == SUCCESS_SUCCESS || result == MAPI_E_USER_ABORT ? MapiResult::Handled : MapiResult::NoClient;
}

class Win32Desktop final : public Desktop {
public:
    explicit Win32Desktop(platform::Platform& os) : os_(os) {}

    bool open(const std::string& file) override {
        return os_.shell().execute("open", file, "", "", platform::WindowStyle::NormalFocus);
    }

    // Without a MAPI mail program, a mailto: link still starts a new message; it cannot carry the
    // attachment, so the message says where the file is.
    bool mail(const std::vector<std::string>& files) override {
        if (sendWithMapi(files) == MapiResult::Handled)
            return true;
        std::string body;
        for (const auto& file : files)
            body += file + "\r\n";
        const std::string subject = files.empty() ? std::string() : fileNameOf(files.front());
        return assistant::SendMailTo(os_.shell(), "", subject, "", "", body);
    }

private:
    platform::Platform& os_;
};

} // namespace

std::unique_ptr<Desktop> makeDesktop(platform::Platform& os) {
    return std::make_unique<Win32Desktop>(os);
}

} // namespace pl::converter
