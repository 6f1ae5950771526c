#include "Benchmarks.h"

int main()
{
    RVCore::benchmarkMessaging();
    RVCore::benchmarkLayoutEngine();
    RVCore::benchmarkGroupLayout();
}
