// A MAPI32.DLL that exports nothing, so it has no MAPISendMail.
