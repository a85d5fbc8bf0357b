// Makes the version readable from the program file: strings query | grep kesto-query

extern const char VERSION_LINE[];
const char VERSION_LINE[] = KESTO_VERSION_LINE;
