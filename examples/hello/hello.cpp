#include <brvUtils/brvUtils.h>
#include <cstdio>
#include <cstring>

struct Speed : brvUtils::ShmAble { // a part: it knows its number, its size and its bytes
    int getId() override { return 1; }
    int getSize() override { return sizeof value; }
    void put(void* segment) override { std::memcpy(segment, &value, sizeof value); }
    void get(void* segment) override { std::memcpy(&value, segment, sizeof value); }
    double value = 0.0; // m/s
};
struct CarShm : brvUtils::CompositeShm { // a segment of one part, guarded by its own semaphore
    CarShm() : CompositeShm(brvUtils::ShmWin32::New, brvUtils::SemaphoreWin32::New, "Car", sizeof(double), 1, 0) { addPart(speed); }
    bool write(double value) { speed.value = value; return put(speed, 1.0); } // waits at most 1 s
    double read() { get(speed, 1.0); return speed.value; }
    Speed speed;
};
int main(int argc, char**) { // with an argument it writes and stays, without it reads
    CarShm car;
    if (argc > 1 && car.write(13.9)) { std::getchar(); }
    std::printf("%.1f m/s\n", car.read());
}
