// A plug-in as it should be.

#include <stdexcept>

namespace {

bool* toldAtUnload = nullptr;

struct Teller
{
    ~Teller()
    {
        if (toldAtUnload != nullptr) {
            *toldAtUnload = true;
        }
    }
} teller;

} // namespace

extern "C" int answer()
{
    return 42;
}

extern "C" void tellAtUnload(bool* told)
{
    toldAtUnload = told;
}

extern "C" void makeEngine()
{
    throw std::runtime_error("no engine of this kind");
}
