// Paperlark.exe as its own process under Windows, with a recording stand-in for Ghostscript's
// console program: how Ghostscript is found and called, what a failure and a time-out leave behind,
// and "open" reaching the document handler that the registry names. The converter runs in a window
// station of its own that nobody sees, as it would from a service: no dialog may wait for an answer.
//
// The converter reads the suite's fixed keys in HKCU, so these tests run one at a time.

#include <gtest/gtest.h>

#include <windows.h>

#include <cctype>
#include <chrono>
#include <optional>
#include <string_view>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const wchar_t* kSuiteKey = L"Software\\tobrin\\PaperlarkXP";

// The build hands us paths of the build machine; under Wine its root is drive Z.
fs::path hostPath(const char* path) {
    std::string text(path);
    if (!text.empty() && text.front() == '/') {
        for (char& c : text)
            c = c == '/' ? '\\' : c;
        text = "Z:" + text;
    }
    return fs::path(std::u8string(text.begin(), text.end()));
}

std::string utf8(const fs::path& path) {
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

std::string readFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

std::optional<std::wstring> stringValue(HKEY root, const std::wstring& key, const wchar_t* name) {
    wchar_t value[1024] = {};
    DWORD size = sizeof value;
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, value, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return std::wstring(value);
}

void setValue(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    RegSetKeyValueW(root, key.c_str(), name, REG_SZ, value.c_str(), static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

// Registry values set for one test and put back as they were afterwards, in reverse order.
class RegistryChanges {
public:
    void set(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& value) {
        saved_.push_back({root, key, name ? name : L"", name == nullptr, stringValue(root, key, name)});
        setValue(root, key, name, value);
    }
    ~RegistryChanges() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            const wchar_t* name = it->unnamed ? nullptr : it->name.c_str();
            if (it->old)
                setValue(it->root, it->key, name, *it->old);
            else
                RegDeleteKeyValueW(it->root, it->key.c_str(), name);
        }
    }

private:
    struct Saved {
        HKEY root;
        std::wstring key, name;
        bool unnamed;
        std::optional<std::wstring> old;
    };
    std::vector<Saved> saved_;
};

// The command that the shell runs for `classKey` ("PaperlarkTest.Document", "mailto") is the
// stand-in, registered for the user as Windows has it. Wine's merged view of the classes does not
// let the user's entry win over the machine's, so there the machine's entry is changed too.
void registerShellCommand(RegistryChanges& changes, const std::wstring& classKey, const std::wstring& command) {
    const std::wstring key = L"Software\\Classes\\" + classKey + L"\\shell\\open\\command";
    changes.set(HKEY_CURRENT_USER, key, nullptr, command);
    if (stringValue(HKEY_CLASSES_ROOT, classKey + L"\\shell\\open\\command", nullptr) != command)
        changes.set(HKEY_LOCAL_MACHINE, key, nullptr, command);
}

class ConverterWin32 : public ::testing::Test {
protected:
    fs::path folder;
    fs::path standIn = hostPath(PAPERLARK_STAND_IN);
    fs::path record;

    void SetUp() override {
        std::random_device random;
        folder = fs::temp_directory_path() / ("plconv-" + std::to_string(random()));
        fs::create_directories(folder / "out");
        record = folder / "record.txt";
        SetEnvironmentVariableW(L"PL_STANDIN_RECORD", record.c_str());
        SetEnvironmentVariableW(L"PL_STANDIN_PIDS", (folder / "pids.txt").c_str());
        SetEnvironmentVariableW(L"PL_STANDIN_MODE", nullptr);
        SetEnvironmentVariableW(L"PL_STANDIN_OPENED", (folder / "opened.txt").c_str());
        // The user's own profiles are looked for below the profile folder.
        SetEnvironmentVariableW(L"USERPROFILE", folder.c_str());
        RegDeleteTreeW(HKEY_CURRENT_USER, kSuiteKey);
        setValue(HKEY_CURRENT_USER, kSuiteKey, L"gswin32c", standIn.wstring());
    }

    void TearDown() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, kSuiteKey);
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    fs::path job(const std::string& name) {
        const fs::path file = folder / fs::path(std::u8string(name.begin(), name.end()));
        std::ofstream(file, std::ios::binary) << "%!PS\n%%Title: " << name << "\nshowpage\n";
        return file;
    }

    // Runs Paperlark.exe with `args` in an invisible window station; its exit code, or nothing
    // when it did not end within `wait`.
    std::optional<DWORD> convert(const std::vector<std::wstring>& args, std::chrono::milliseconds wait = 30s) {
        const fs::path converter = hostPath(PAPERLARK_CONVERTER);
        std::wstring line = L"\"" + converter.wstring() + L"\"";
        for (const auto& arg : args)
            line += L" \"" + arg + L"\"";

        HWINSTA station = CreateWindowStationW(nullptr, 0, GENERIC_ALL, nullptr);
        if (!station)
            return std::nullopt;
        HWINSTA own = GetProcessWindowStation();
        SetProcessWindowStation(station);
        HDESK desk = CreateDesktopW(L"Default", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        SetProcessWindowStation(own);
        wchar_t name[256] = {};
        DWORD needed = 0;
        GetUserObjectInformationW(station, UOI_NAME, name, sizeof name - sizeof(wchar_t), &needed);
        std::wstring desktop = std::wstring(name) + L"\\Default";

        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.lpDesktop = desktop.data();
        PROCESS_INFORMATION process{};
        std::optional<DWORD> exitCode;
        if (CreateProcessW(converter.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup,
                           &process)) {
            if (WaitForSingleObject(process.hProcess, static_cast<DWORD>(wait.count())) == WAIT_OBJECT_0) {
                DWORD code = 0;
                GetExitCodeProcess(process.hProcess, &code);
                exitCode = code;
            } else {
                TerminateProcess(process.hProcess, 99);
            }
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
        if (desk)
            CloseDesktop(desk);
        CloseWindowStation(station);
        return exitCode;
    }

    // What the document or link handler was given; it runs on its own, after the converter.
    std::string waitForOpened() {
        const fs::path opened = folder / "opened.txt";
        for (int i = 0; i < 100 && !fs::exists(opened); ++i)
            std::this_thread::sleep_for(100ms);
        std::this_thread::sleep_for(100ms);
        return readFile(opened);
    }

    std::vector<std::string> filesIn(const fs::path& where) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(where))
            names.push_back(utf8(entry.path().filename()));
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(ConverterWin32, ghostscript_named_by_gswin32c_gets_the_job_and_never_a_password) {
    fs::create_directories(folder / "Paperlark");
    std::ofstream(folder / "Paperlark" / "Geheim.plp", std::ios::binary)
        << "-sDEVICE=pdfwrite -dPDFSETTINGS=/prepress -dNOSAFER\r\nuserpassword=Lese7\r\nownerpassword=Besitz9\r\n";
    const fs::path queued = job("queued.ps");
    const fs::path first = job("Bericht \xC3\x84.ps");
    const fs::path output = folder / "out" / u8"Bericht \u00C4 100%.pdf";

    const auto code = convert({L"/3", L"save,delps", L"Geheim", output.wstring(), queued.wstring(), first.wstring()});

    ASSERT_EQ(code, 0u);
    const std::string written = readFile(output);
    EXPECT_TRUE(written.starts_with("%PDF-1.4\n") &&
                written.ends_with("% written by the stand-in\nstartxref\n9\n%%EOF\n"))
        << written;
    EXPECT_FALSE(fs::exists(queued));
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(filesIn(folder / "out"), std::vector<std::string>{"Bericht \xC3\x84 100%.pdf"});

    const std::vector<std::string> words = lines(readFile(record));
    // The page counter's PostScript holds a line break: it takes two lines of the record.
    ASSERT_EQ(words.size(), 21u) << readFile(record);
    EXPECT_EQ(words[0], utf8(standIn));
    EXPECT_EQ(words[1], "-dSAFER");
    EXPECT_EQ(words[2], "-dBATCH");
    EXPECT_EQ(words[3], "-dNOPAUSE");
    EXPECT_EQ(words[4], "-sDEVICE=pdfwrite");
    EXPECT_EQ(words[5], "-dPDFSETTINGS=/prepress"); // -dNOSAFER is not the profile's to give
    ASSERT_EQ(words[6].substr(0, 1), "@");
    EXPECT_EQ(words[7], "@: \"-sOwnerPassword=Besitz9\" ");
    EXPECT_EQ(words[8], "@: \"-sUserPassword=Lese7\" ");
    EXPECT_EQ(words[9], "@: -dEncryptionR=3 ");
    EXPECT_EQ(words[10], "@: -dKeyLength=128 ");
    // Ghostscript writes a hidden temporary beside the output, which then takes the output's name.
    const std::string outputWord = "-sOutputFile=" + utf8(folder / "out") + "\\.paperlark-";
    EXPECT_EQ(words[11].substr(0, outputWord.size()), outputWord);
    EXPECT_TRUE(words[11].ends_with(".tmp")) << words[11];
    EXPECT_EQ(words[12], "-c");
    EXPECT_EQ(words[15], "-f" + utf8(queued));
    EXPECT_EQ(words[16], "-f" + utf8(first));
    EXPECT_EQ(words[17], "-c");
    // The title is the output's name without its extension, in UTF-16.
    EXPECT_EQ(words[18], "[ /Title <FEFF0042006500720069006300680074002000C400200031003000300025> /DOCINFO pdfmark");
    EXPECT_EQ(words[19], "-c");
    EXPECT_EQ(words[20].substr(0, 17), "systemdict begin ");
    // The password file went with Ghostscript's private folder.
    EXPECT_FALSE(fs::exists(hostPath(words[6].substr(1).c_str())));
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].substr(0, 3) != "@: ") {
            EXPECT_EQ(words[i].find("Lese7"), std::string::npos) << words[i];
            EXPECT_EQ(words[i].find("Besitz9"), std::string::npos) << words[i];
        }
    }
}

TEST_F(ConverterWin32, failing_ghostscript_keeps_every_input_and_leaves_no_output) {
    SetEnvironmentVariableW(L"PL_STANDIN_MODE", L"fail");
    const fs::path queued = job("queued.ps");
    const fs::path first = job("job.ps");
    const fs::path output = folder / "out" / "result.pdf";

    const auto code = convert({L"/3", L"delps,save,open", L"", output.wstring(), queued.wstring(), first.wstring()});

    EXPECT_EQ(code, 1u);
    EXPECT_EQ(readFile(queued), "%!PS\n%%Title: queued.ps\nshowpage\n");
    EXPECT_EQ(readFile(first), "%!PS\n%%Title: job.ps\nshowpage\n");
    EXPECT_TRUE(filesIn(folder / "out").empty());
}

TEST_F(ConverterWin32, time_limit_ends_ghostscript_and_the_program_it_started) {
    SetEnvironmentVariableW(L"PL_STANDIN_MODE", L"hang");
    setValue(HKEY_CURRENT_USER, kSuiteKey, L"GsTimeout", L"2");
    const fs::path first = job("job.ps");
    const fs::path output = folder / "out" / "result.pdf";

    const auto started = std::chrono::steady_clock::now();
    const auto code = convert({L"/3", L"delps,save", L"", output.wstring(), first.wstring()}, 60s);

    ASSERT_EQ(code, 1u);
    EXPECT_LT(std::chrono::steady_clock::now() - started, 30s);
    EXPECT_TRUE(fs::exists(first));
    EXPECT_TRUE(filesIn(folder / "out").empty());
    const std::vector<std::string> pids = lines(readFile(folder / "pids.txt"));
    ASSERT_EQ(pids.size(), 2u) << "the stand-in and its copy";
    for (const auto& pid : pids) {
        HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::stoul(pid)));
        if (process) {
            EXPECT_EQ(WaitForSingleObject(process, 5000), WAIT_OBJECT_0) << "process " << pid << " still runs";
            CloseHandle(process);
        }
    }
}

TEST_F(ConverterWin32, open_hands_the_result_to_the_registered_pdf_handler) {
    RegistryChanges changes;
    changes.set(HKEY_CURRENT_USER, L"Software\\Classes\\.pdf", nullptr, L"PaperlarkTest.Document");
    if (stringValue(HKEY_CLASSES_ROOT, L".pdf", nullptr) != L"PaperlarkTest.Document")
        changes.set(HKEY_LOCAL_MACHINE, L"Software\\Classes\\.pdf", nullptr, L"PaperlarkTest.Document");
    registerShellCommand(changes, L"PaperlarkTest.Document", L"\"" + standIn.wstring() + L"\" --opened \"%1\"");
    const fs::path first = job("job.ps");
    const fs::path output = folder / "out" / "result.pdf";

    const auto code = convert({L"/3", L"delps,save,open", L"", output.wstring(), first.wstring()});

    EXPECT_EQ(code, 0u);
    EXPECT_EQ(waitForOpened(), utf8(output));
}

// Without a mail program for Simple MAPI, a mailto: link still starts a message; it cannot attach
// the file, so it names it.
TEST_F(ConverterWin32, email_without_a_mapi_mail_program_opens_a_mailto_link_naming_the_file) {
    RegistryChanges changes;
    changes.set(HKEY_LOCAL_MACHINE, L"Software\\Clients\\Mail", nullptr, L"");
    changes.set(HKEY_CURRENT_USER, L"Software\\Clients\\Mail", nullptr, L"");
    registerShellCommand(changes, L"mailto", L"\"" + standIn.wstring() + L"\" --opened \"%1\"");
    const fs::path first = job("job.ps");
    const fs::path output = folder / "out" / "Invoice 7.pdf";

    const auto code = convert({L"/3", L"delps,email", L"", output.wstring(), first.wstring()});

    EXPECT_EQ(code, 0u);
    std::string expected = "mailto:?Subject=Invoice%207.pdf&Body=";
    for (char c : utf8(output) + "\r\n") {
        static const char digits[] = "0123456789ABCDEF";
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) || std::string_view("-./_~&:?@#!$*+").find(c) != std::string_view::npos;
        expected += plain ? std::string(1, c) : std::string{'%', digits[(c >> 4) & 0xF], digits[c & 0xF]};
    }
    EXPECT_EQ(waitForOpened(), expected);
}

TEST_F(ConverterWin32, without_gswin32c_the_newest_registered_ghostscript_runs) {
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kSuiteKey, L"gswin32c");
    const wchar_t* product = L"SOFTWARE\\GPL Ghostscript";
    std::vector<std::wstring> registered;
    for (const wchar_t* version : {L"9.56.1", L"10.02.1", L"10.0"}) {
        const fs::path bin = folder / (L"gs" + std::wstring(version)) / "bin";
        fs::create_directories(bin);
        fs::copy_file(standIn, bin / "gswin64c.exe");
        const std::wstring library = (bin / "gsdll64.dll").wstring();
        const std::wstring key = std::wstring(product) + L"\\" + version;
        ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"GS_DLL", REG_SZ, library.c_str(),
                                  static_cast<DWORD>((library.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
        registered.push_back(key);
    }
    const fs::path first = job("job.ps");

    const auto code = convert({L"/3", L"save", L"", (folder / "out" / "result.pdf").wstring(), first.wstring()});

    for (const auto& key : registered)
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, key.c_str());
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, product);
    EXPECT_EQ(code, 0u);
    const std::vector<std::string> words = lines(readFile(record));
    ASSERT_FALSE(words.empty());
    EXPECT_EQ(words[0], utf8(folder / "gs10.02.1" / "bin" / "gswin64c.exe"));
    EXPECT_TRUE(fs::exists(first)) << "kept without delps";
}

} // namespace
