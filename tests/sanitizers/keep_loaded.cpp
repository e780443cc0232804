// Loaded before all else by the runs with AddressSanitizer: a GL driver that
// stays loaded can be named in a report, and so by a suppression.
extern "C" int dlclose(void * /*library*/)
{
    return 0;
}
