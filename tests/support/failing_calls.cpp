/// \file
/// Loaded before the C library, this library makes chosen calls on chosen files fail, as a full or broken disk does.
///
/// VADELCLIP_FAILING_CALL     open, read, fread, write, fclose, opendir, readdir, mkdir, unlink, stat, lstat, fstat,
///                            statvfs, readlink, or pthread_create, which has no path
/// VADELCLIP_FAILING_PATH     only calls on paths with this ending
/// VADELCLIP_FAILING_PROGRAM  only in the program of this name, not in its children; absent for every program
/// VADELCLIP_FAILING_OPENING  only reads during this opening of such a path, counted from 1; absent for all
/// VADELCLIP_OUTCOMES         outcomes of the calls: see scripted_outcomes.hpp
///
/// VADELCLIP_NOTED_PATH       writes a line to descriptor 3, among the recorded messages, for each opening and closing
///                            of a path with this ending; absent for none

#include "scripted_outcomes.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

int openings = 0;

/// Returns the function of the C library that a function here replaces.
template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Returns the outcomes. Reads them at the first chosen call.
vadelclip::ScriptedOutcomes& outcomes() {
    static vadelclip::ScriptedOutcomes script;
    static const bool started = (script.start(), true);
    static_cast<void>(started);
    return script;
}

std::string_view setting(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool isChosenProgram() {
    const std::string_view program = setting("VADELCLIP_FAILING_PROGRAM");
    return program.empty() || program == program_invocation_short_name;
}

bool isChosen(std::string_view call, std::string_view path) {
    return call == setting("VADELCLIP_FAILING_CALL") && path.ends_with(setting("VADELCLIP_FAILING_PATH")) &&
           isChosenProgram();
}

/// Returns the result of `vadelclip::ScriptedOutcomes::next` and sets the error number.
long outcomeFor(std::string_view call, std::string_view path) {
    const long outcome = isChosen(call, path) ? outcomes().next() : vadelclip::ScriptedOutcomes::passes;
    if (outcome < 0) {
        errno = static_cast<int>(-outcome);
    }
    return outcome;
}

/// Returns the path of an open file, or an empty text.
std::string pathOf(int descriptor) {
    static const auto next = original<ssize_t(const char*, char*, std::size_t)>("readlink");
    char link[32];
    char path[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = next(link, path, sizeof path);
    return {path, length < 0 ? 0 : static_cast<std::size_t>(length)};
}

long outcomeFor(std::string_view call, int descriptor) {
    const std::string path = pathOf(descriptor);
    return path.empty() ? vadelclip::ScriptedOutcomes::passes : outcomeFor(call, path);
}

/// Records a call with the name of the file and of its directory.
void record(const char* call, const std::string& path) {
    const std::string_view ending = setting("VADELCLIP_NOTED_PATH");
    if (!ending.empty() && path.ends_with(ending)) {
        dprintf(3, "%s %s\n", call, path.c_str() + path.rfind('/', path.rfind('/') - 1) + 1);
    }
}

bool isChosenOpening() {
    const std::string_view opening = setting("VADELCLIP_FAILING_OPENING");
    return opening.empty() || opening == "0" || std::atoi(opening.data()) == openings;
}

FILE* openUnlessItFails(const char* name, const char* path, const char* mode) {
    if (std::string_view(path).ends_with(setting("VADELCLIP_FAILING_PATH"))) {
        ++openings;
    }
    record("open", path);
    return outcomeFor("open", path) < 0 ? nullptr : original<FILE*(const char*, const char*)>(name)(path, mode);
}

} // namespace

extern "C" FILE* fopen(const char* path, const char* mode) {
    return openUnlessItFails("fopen", path, mode);
}

extern "C" FILE* fopen64(const char* path, const char* mode) {
    return openUnlessItFails("fopen64", path, mode);
}

extern "C" int fclose(FILE* file) {
    static const auto next = original<int(FILE*)>("fclose");
    record("close", pathOf(fileno(file)));
    const long outcome = outcomeFor("fclose", fileno(file));
    const int result = next(file);
    if (outcome < 0) {
        errno = static_cast<int>(-outcome);
        return EOF;
    }
    return result;
}

extern "C" ssize_t read(int descriptor, void* bytes, std::size_t count) {
    static const auto next = original<ssize_t(int, void*, std::size_t)>("read");
    const long outcome = isChosenOpening() ? outcomeFor("read", descriptor) : vadelclip::ScriptedOutcomes::passes;
    const std::size_t limit = outcome > 0 ? static_cast<std::size_t>(outcome) : count;
    return outcome < 0 ? -1 : next(descriptor, bytes, std::min(count, limit));
}

extern "C" std::size_t fread(void* items, std::size_t size, std::size_t count, FILE* file) {
    static const auto next = original<std::size_t(void*, std::size_t, std::size_t, FILE*)>("fread");
    const long outcome = outcomeFor("fread", fileno(file));
    const std::size_t limit = outcome > 0 ? static_cast<std::size_t>(outcome) / size : count;
    return outcome < 0 ? 0 : next(items, size, std::min(count, limit), file);
}

extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    static const auto next = original<ssize_t(int, const void*, std::size_t)>("write");
    const long outcome = outcomeFor("write", descriptor);
    const std::size_t limit = outcome > 0 ? static_cast<std::size_t>(outcome) : count;
    return outcome < 0 ? -1 : next(descriptor, bytes, std::min(count, limit));
}

extern "C" ssize_t writev(int descriptor, const iovec* pieces, int count) {
    static const auto next = original<ssize_t(int, const iovec*, int)>("writev");
    const long outcome = outcomeFor("write", descriptor);
    if (outcome <= 0) {
        return outcome < 0 ? -1 : next(descriptor, pieces, count);
    }
    const iovec* const first =
        std::find_if(pieces, pieces + count, [](const iovec& piece) { return piece.iov_len > 0; });
    iovec beginning = *first;
    beginning.iov_len = std::min(beginning.iov_len, static_cast<std::size_t>(outcome));
    return next(descriptor, &beginning, 1);
}

extern "C" DIR* opendir(const char* path) {
    static const auto next = original<DIR*(const char*)>("opendir");
    return outcomeFor("opendir", path) < 0 ? nullptr : next(path);
}

extern "C" dirent64* readdir64(DIR* directory) {
    static const auto next = original<dirent64*(DIR*)>("readdir64");
    return outcomeFor("readdir", dirfd(directory)) < 0 ? nullptr : next(directory);
}

extern "C" dirent* readdir(DIR* directory) {
    static const auto next = original<dirent*(DIR*)>("readdir");
    return outcomeFor("readdir", dirfd(directory)) < 0 ? nullptr : next(directory);
}

extern "C" int mkdir(const char* path, mode_t mode) noexcept {
    static const auto next = original<int(const char*, mode_t)>("mkdir");
    return outcomeFor("mkdir", path) < 0 ? -1 : next(path, mode);
}

extern "C" int unlink(const char* path) noexcept {
    static const auto next = original<int(const char*)>("unlink");
    return outcomeFor("unlink", path) < 0 ? -1 : next(path);
}

extern "C" int stat64(const char* path, struct stat64* result) noexcept {
    static const auto next = original<int(const char*, struct stat64*)>("stat64");
    return outcomeFor("stat", path) < 0 ? -1 : next(path, result);
}

extern "C" int stat(const char* path, struct stat* result) noexcept {
    static const auto next = original<int(const char*, struct stat*)>("stat");
    return outcomeFor("stat", path) < 0 ? -1 : next(path, result);
}

extern "C" int lstat(const char* path, struct stat* result) noexcept {
    static const auto next = original<int(const char*, struct stat*)>("lstat");
    return outcomeFor("lstat", path) < 0 ? -1 : next(path, result);
}

extern "C" int fstat(int descriptor, struct stat* result) noexcept {
    static const auto next = original<int(int, struct stat*)>("fstat");
    return outcomeFor("fstat", descriptor) < 0 ? -1 : next(descriptor, result);
}

extern "C" int statvfs(const char* path, struct statvfs* result) noexcept {
    static const auto next = original<int(const char*, struct statvfs*)>("statvfs");
    return outcomeFor("statvfs", path) < 0 ? -1 : next(path, result);
}

extern "C" ssize_t readlink(const char* path, char* target, std::size_t size) noexcept {
    static const auto next = original<ssize_t(const char*, char*, std::size_t)>("readlink");
    return outcomeFor("readlink", path) < 0 ? -1 : next(path, target, size);
}

// This function returns its error number instead of setting it.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                              void* argument) {
    static const auto next =
        original<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    const long outcome = outcomeFor("pthread_create", "");
    return outcome < 0 ? static_cast<int>(-outcome) : next(thread, attributes, routine, argument);
}
