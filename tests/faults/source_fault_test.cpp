namespace
{
}
