// A stand-in for Ghostscript's console program that records how it was called and then behaves as
// the test asks through the environment, which the converter passes on to it:
//   PL_STANDIN_RECORD  file that receives every word of the command line, one per line, and for
//                      an "@file" word also that file's lines, each after "@: "
//   PL_STANDIN_MODE    "write" (default): writes a small one-page PDF to -sOutputFile= and succeeds;
//                      "fail": writes half a file, complains and exits with 1;
//                      "hang": starts a copy of itself and both wait for ever
//   PL_STANDIN_PIDS    file that receives the process ids of the hanging stand-in and its copy
// Called as "--opened WHAT" it is a document or link handler: it writes WHAT into the file named
// by PL_STANDIN_OPENED.

#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::string narrow(const std::wstring& text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, out.data(), size, nullptr, nullptr);
    out.resize(out.size() - 1);
    return out;
}

std::wstring variable(const wchar_t* name) {
    wchar_t buffer[4096];
    const DWORD length = GetEnvironmentVariableW(name, buffer, 4096);
    return length && length < 4096 ? std::wstring(buffer, length) : std::wstring();
}

void appendLine(const std::wstring& file, const std::string& line) {
    if (file.empty())
        return;
    std::ofstream out(std::filesystem::path(file), std::ios::binary | std::ios::app);
    out << line << "\n";
}

// Ghostscript reads "%%" in an output name as one "%".
std::wstring outputName(std::wstring value) {
    for (std::size_t at = value.find(L"%%"); at != std::wstring::npos; at = value.find(L"%%", at + 1))
        value.erase(at, 1);
    return value;
}

void startCopy(const std::wstring& self) {
    std::wstring line = L"\"" + self + L"\" --child";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(self.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

} // namespace

int main() {
    int count = 0;
    wchar_t** argv = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> words(argv, argv + count);
    LocalFree(argv);

    if (words.size() == 3 && words[1] == L"--opened") {
        std::ofstream(std::filesystem::path(variable(L"PL_STANDIN_OPENED")), std::ios::binary) << narrow(words[2]);
        return 0;
    }
    if (words.size() == 2 && words[1] == L"--child") {
        appendLine(variable(L"PL_STANDIN_PIDS"), std::to_string(GetCurrentProcessId()));
        Sleep(INFINITE);
    }

    const std::wstring record = variable(L"PL_STANDIN_RECORD");
    std::wstring output;
    for (const auto& word : words) {
        appendLine(record, narrow(word));
        if (word.rfind(L"@", 0) == 0) {
            std::ifstream in(std::filesystem::path(word.substr(1)), std::ios::binary);
            for (std::string line; std::getline(in, line);)
                appendLine(record, "@: " + line);
        }
        if (word.rfind(L"-sOutputFile=", 0) == 0)
            output = outputName(word.substr(13));
    }

    const std::wstring mode = variable(L"PL_STANDIN_MODE");
    if (mode == L"hang") {
        appendLine(variable(L"PL_STANDIN_PIDS"), std::to_string(GetCurrentProcessId()));
        wchar_t self[MAX_PATH];
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        startCopy(self);
        Sleep(INFINITE);
    }
    if (mode == L"fail") {
        std::ofstream(std::filesystem::path(output), std::ios::binary) << "%PDF-1.4\n% half a page";
        fputs("Error: /undefined in nonsense\nOperand stack:\n", stderr);
        return 1;
    }
    // A whole PDF as far as the converter checks one: a page, and a trailer that points at an
    // object (the first, right after the 9-byte header).
    std::ofstream(std::filesystem::path(output), std::ios::binary)
        << "%PDF-1.4\n"
           "1 0 obj << /Type /Catalog /Pages 2 0 R >> endobj\n"
           "2 0 obj << /Type /Pages /Kids [3 0 R] /Count 1 >> endobj\n"
           "3 0 obj << /Type /Page /Parent 2 0 R /MediaBox [0 0 10 10] >> endobj\n"
           "% written by the stand-in\n"
           "startxref\n9\n%%EOF\n";
    return 0;
}
