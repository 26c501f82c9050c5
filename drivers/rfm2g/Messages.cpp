#include "rfm2g/Messages.h"

namespace softwareCard {

const char* messageOf(brvUtils::rfm2g::Status status)
{
    switch (static_cast<int>(status)) {
    case 0: return "Success";
    case 1: return "Not implemented";
    case 2: return "The driver failed";
    case 3: return "Timed out";
    case 4: return "Too little memory";
    case 6: return "The operating system failed";
    case 7: return "The event is in use";
    case 8: return "Not supported";
    case 9: return "The card is not open";
    case 10: return "No such card";
    case 11: return "Bad parameter 1";
    case 12: return "Bad parameter 2";
    case 13: return "Bad parameter 3";
    case 14: return "Bad parameter 4";
    case 15: return "Bad parameter 5";
    case 16: return "Bad parameter 6";
    case 17: return "Bad parameter 7";
    case 18: return "Bad parameter 8";
    case 19: return "Bad parameter 9";
    case 20: return "Out of the card's memory";
    case 22: return "The ring is open";
    case 27: return "Reading failed";
    case 28: return "Writing failed";
    case 31: return "The event is not enabled";
    case 32: return "The event is enabled already";
    case 35: return "The handle is null";
    case 41: return "That is the card's own node";
    default: return nullptr;
    }
}

} // namespace softwareCard
