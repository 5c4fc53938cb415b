#ifndef TESTS_CONFIGURABLE_SESSION_H
#define TESTS_CONFIGURABLE_SESSION_H

// A client session on the test tree: requests in order with their compact
// answers (errors answered as elements).

struct SessionStep {
    bool clearFirst;  // set_changed(false) on L before the request
    const char* request;
    const char* answer;
};

inline const char* const WHOLE_TREE =
    "<L><a>1234</a><b>0.1234</b><d><e><g>0.11</g><g>0.22</g><g>0.33</g></e><f>6.5</f></d>"
    "<c>43.21</c><lunch>apple</lunch><dog pitch=\"11.22\">88.11</dog><dyn/></L>";

inline const char* const TREE_TYPE =
    "<L><a>{float}</a><b>{float}</b><d><e><g>{float}</g><g>{float}</g><g>{float}</g></e>"
    "<f>{float}</f></d><c>{float}</c>"
    "<lunch>{apple|banana|orange|grapes|tire|translate&lt;&gt;&amp;&apos;&quot;}</lunch>"
    "<dog pitch=\"{float}\" sticky>{float}</dog>"
    "<dyn><val>{float}</val><val>{float}</val><val>{float}</val></dyn></L>";

// One client session on the tree, in order: each answer depends on the
// assignments of the requests before it.
inline const SessionStep SESSION[] = {
    {true, "&query_item;", WHOLE_TREE},
    {false, "&query_item;", WHOLE_TREE},
    {false, "<L><a>&query_item;</a><b>&query_item;</b></L>", "1234 0.1234"},
    {false, "&query_changes_item;", ""},
    {false, "<L><b>1.0</b></L>", ""},
    {false, "<L><b>&query_item;</b></L>", "1"},
    {false, "&query_changes_item;", "<L><b>1</b></L>"},
    {false, "<L><c> &query_item; 9 &query_item; </c></L>", "43.21 9"},
    {false, "<L><c> &query_item; </c></L>", "9"},
    {false, "&query_changes_item;", "<L><b>1</b><c>9</c></L>"},
    {false, "<L><a> &query_item; </a></L> this is some junk the configurable should throw away",
     "1234"},
    {true, "&query_changes_item;", ""},
    {false, "<L><d><e><g>1</g></e></d> &query_changes_item; </L>",
     "<d><e><g>1</g><g>1</g><g>1</g></e></d>"},
    {false, "<L><a>qwerty</a><b>2.1</b><a> &query_item; </a><b> &query_item; </b></L>",
     "<Error Param=\"a\">unable to read float</Error>1234 2.1"},
    {false, "<L><b>&query_illegal;</b></L>",
     "<Error Param=\"b\">Invalid query: &query_illegal;</Error>"},
    {false, "<L><attic>&query_item;</attic></L>", ""},
    {false, "<L><attic>&query_item;</attic><a>&query_item;</a></L>", "1234"},
    {false, "<L><attic>4321</attic><a>2233</a></L>", ""},
    {false, "<L><attic>4321</attic><a>&query_item;</a></L>", "2233"},
    {false, "<attic>&query_item;</attic>",
     "<Error Param=\"L\">Invalid start element: attic</Error>"},
    {false, "<L><d><GG>&query_item;</GG></d></L>", ""},
    {false, "<L><dyn><val>1</val><val>2</val><val>3</val></dyn></L>", ""},
    {false, "&query_doctype;", TREE_TYPE},
    {false, "<L>&query_doctype_context;</L>", TREE_TYPE},
    {false, "<L><lunch>&query_doctype_item;</lunch></L>",
     "{apple|banana|orange|grapes|tire|translate&lt;&gt;&amp;&apos;&quot;}"},
    {false, "<L><d><e> &query_changes; </e></d></L>",
     "<L><d><e><g>1</g><g>1</g><g>1</g></e></d></L>"},
    // The leaf's skip ends at the child's end tag, so the leaf's own end tag
    // then ends the root's reading.
    {false, "<L><a><x>1</x>5</a><b>&query_item;</b></L>",
     "<Error Param=\"a\">Invalid configuration tag: x</Error>"
     "<Error Param=\"L\">Invalid End Element: a</Error>"},
    {false, "<L><a>&query_item;</b></a><c>&query_item;</c></L>",
     "2233<Error Param=\"a\">Invalid End Element: b</Error>9"},
    {false, "<L><a x=\"1\">7</a><c>&query_item;</c></L>",
     "<Error Param=\"a\">This item has no attributes</Error>9"},
    // Malformed XML gives no error text; the siblings are still read.
    {false, "<L><a>< broken</a><c>&query_item;</c></L>", "9"},
};

#endif
