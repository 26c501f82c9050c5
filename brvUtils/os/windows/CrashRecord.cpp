#include "brvUtils/os/windows/CrashRecord.h"

namespace brvUtils::os {
namespace {

/// Goes up to the caller of the module that captured the context, since who reads a dump looks for what crashed. Takes no
/// lock that a crashed thread could hold.
void leaveThisModule(CONTEXT& context) noexcept
{
    DWORD64 ownBase = 0;
    DWORD64 base = 0;
    RtlLookupFunctionEntry(context.Rip, &ownBase, nullptr);
    if (ownBase == reinterpret_cast<DWORD64>(GetModuleHandleW(nullptr))) {
        return; // Linked into the program: all of it would be left.
    }
    CONTEXT caller = context;
    while (PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(caller.Rip, &base, nullptr)) {
        if (base != ownBase) {
            context = caller;
            return;
        }
        void* handler = nullptr;
        DWORD64 frame = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, caller.Rip, function, &caller, &handler, &frame, nullptr);
    }
}

} // namespace

CrashRecord::CrashRecord(DWORD code, const ULONG_PTR* parameter) noexcept
{
    RtlCaptureContext(&context_);
    leaveThisModule(context_);
    record_.ExceptionCode = code;
    record_.ExceptionFlags = EXCEPTION_NONCONTINUABLE;
    record_.ExceptionAddress = reinterpret_cast<void*>(context_.Rip);
    if (parameter != nullptr) {
        record_.NumberParameters = 1;
        record_.ExceptionInformation[0] = *parameter;
    }
}

} // namespace brvUtils::os
