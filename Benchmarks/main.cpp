#include "Benchmarks.h"

int main()
{
    RVCore::benchmarkMessaging();
}
