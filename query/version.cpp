// Tells the program's version where the program cannot be asked: strings query | grep kesto-query

extern const char VERSION_LINE[];
const char VERSION_LINE[] = "kesto-query " KESTO_VERSION;
