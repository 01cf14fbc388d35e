// The few lines that the page itself says once it is there; early.js has those for before, and all others come from the
// ocarina.

/**
 * @typedef {{
 *   touch: string, noWebAssembly: string, noAudioWorklet: string, insecure: string, ended: string, again: string,
 *   failed: string, download: string, tooLarge: string, unreadable: string, notKept: string
 * }} Texts
 */

/** @type {Record<string, Texts>} */
const TEXTS = {
    en: {
        touch: 'Touch to play',
        noWebAssembly: 'This browser is too old for Brevant: it has no WebAssembly.',
        noAudioWorklet: 'This browser is too old for Brevant: it has no AudioWorklet.',
        insecure: 'Brevant needs a secure address, one that begins with https.',
        ended: 'Brevant has ended.',
        again: 'Start again',
        failed: 'Brevant could not start.',
        download: 'Download',
        tooLarge: 'The file is too large for this browser.',
        unreadable: 'The file cannot be read.',
        notKept: 'Settings are not kept: this browser has no room left.',
    },
    de: {
        touch: 'Zum Spielen berühren',
        noWebAssembly: 'Dieser Browser ist zu alt für Brevant: Er hat kein WebAssembly.',
        noAudioWorklet: 'Dieser Browser ist zu alt für Brevant: Er hat kein AudioWorklet.',
        insecure: 'Brevant braucht eine sichere Adresse, die mit https beginnt.',
        ended: 'Brevant ist beendet.',
        again: 'Neu starten',
        failed: 'Brevant konnte nicht starten.',
        download: 'Herunterladen',
        tooLarge: 'Die Datei ist zu groß für diesen Browser.',
        unreadable: 'Die Datei lässt sich nicht lesen.',
        notKept: 'Einstellungen bleiben nicht erhalten: Dieser Browser hat keinen Platz mehr.',
    },
    fr: {
        touch: 'Touchez pour jouer',
        noWebAssembly: 'Ce navigateur est trop ancien pour Brevant : il n’a pas WebAssembly.',
        noAudioWorklet: 'Ce navigateur est trop ancien pour Brevant : il n’a pas AudioWorklet.',
        insecure: 'Brevant demande une adresse sûre, qui commence par https.',
        ended: 'Brevant est terminé.',
        again: 'Recommencer',
        failed: 'Brevant n’a pas pu démarrer.',
        download: 'Télécharger',
        tooLarge: 'Le fichier est trop grand pour ce navigateur.',
        unreadable: 'Le fichier est illisible.',
        notKept: 'Les réglages ne sont pas conservés : ce navigateur n’a plus de place.',
    },
    es: {
        touch: 'Toca para tocar',
        noWebAssembly: 'Este navegador es demasiado antiguo para Brevant: no tiene WebAssembly.',
        noAudioWorklet: 'Este navegador es demasiado antiguo para Brevant: no tiene AudioWorklet.',
        insecure: 'Brevant necesita una dirección segura, que empiece por https.',
        ended: 'Brevant ha terminado.',
        again: 'Empezar de nuevo',
        failed: 'Brevant no pudo iniciarse.',
        download: 'Descargar',
        tooLarge: 'El archivo es demasiado grande para este navegador.',
        unreadable: 'El archivo no se puede leer.',
        notKept: 'Los ajustes no se guardan: este navegador no tiene más espacio.',
    },
    pt: {
        touch: 'Toque para tocar',
        noWebAssembly: 'Este navegador é antigo demais para o Brevant: não tem WebAssembly.',
        noAudioWorklet: 'Este navegador é antigo demais para o Brevant: não tem AudioWorklet.',
        insecure: 'O Brevant precisa de um endereço seguro, que comece por https.',
        ended: 'O Brevant terminou.',
        again: 'Começar de novo',
        failed: 'O Brevant não pôde começar.',
        download: 'Baixar',
        tooLarge: 'O arquivo é grande demais para este navegador.',
        unreadable: 'Não é possível ler o arquivo.',
        notKept: 'As configurações não são guardadas: este navegador não tem mais espaço.',
    },
    ko: {
        touch: '터치하여 연주하세요',
        noWebAssembly: '이 브라우저는 Brevant에 너무 오래되었습니다. WebAssembly가 없습니다.',
        noAudioWorklet: '이 브라우저는 Brevant에 너무 오래되었습니다. AudioWorklet이 없습니다.',
        insecure: 'Brevant에는 https로 시작하는 안전한 주소가 필요합니다.',
        ended: 'Brevant가 종료되었습니다.',
        again: '다시 시작',
        failed: 'Brevant를 시작할 수 없습니다.',
        download: '다운로드',
        tooLarge: '파일이 이 브라우저에는 너무 큽니다.',
        unreadable: '파일을 읽을 수 없습니다.',
        notKept: '브라우저에 공간이 없어 설정이 저장되지 않습니다.',
    },
    ja: {
        touch: 'タッチして演奏',
        noWebAssembly: 'このブラウザーは古すぎます。WebAssemblyがありません。',
        noAudioWorklet: 'このブラウザーは古すぎます。AudioWorkletがありません。',
        insecure: 'Brevantにはhttpsで始まる安全なアドレスが必要です。',
        ended: 'Brevantは終了しました。',
        again: 'もう一度始める',
        failed: 'Brevantを始められませんでした。',
        download: 'ダウンロード',
        tooLarge: 'ファイルが大きすぎてこのブラウザーでは扱えません。',
        unreadable: 'ファイルを読み込めません。',
        notKept: 'ブラウザーに空きがないため、設定は保存されません。',
    },
};

/** @param {string} language one that the page's first script chose */
export function textsOf(language) {
    return TEXTS[language];
}
